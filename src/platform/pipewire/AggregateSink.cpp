#include "platform/pipewire/AggregateSink.h"

#include "platform/pipewire/Devices.h"

#include <algorithm>

namespace velmora::pipewire {
namespace {

/// What is played into a sink comes out of its monitor ports.
std::vector<Port> monitorPorts(const Node& sink) {
    std::vector<Port> ports;
    std::ranges::copy_if(
        sink.ports, std::back_inserter(ports), [](const Port& port) { return port.isOutput; });
    return ports;
}

bool areLinked(const Graph& graph, Serial output, Serial input) {
    return std::ranges::any_of(graph.links(), [&](const auto& one) {
        return one.second.outputNode == output && one.second.inputNode == input;
    });
}

} // namespace

void AggregateSink::follow(const Graph& graph) {
    const Node* const sink = graph.nodeNamed(aggregate_.uid);
    if (sink == nullptr && !sink_) {
        sink_ = connection_.create("adapter",
                                   PW_TYPE_INTERFACE_Node,
                                   PW_VERSION_NODE,
                                   {{"factory.name", "support.null-audio-sink"},
                                    {"media.class", "Audio/Sink"},
                                    {"node.name", aggregate_.uid},
                                    {"node.description", aggregate_.name},
                                    {"audio.position", "[FL,FR]"},
                                    {"node.virtual", "true"},
                                    // Neither the default output nor the clock.
                                    {"priority.session", "0"},
                                    {"priority.driver", "0"},
                                    {"device.routes", "1"},
                                    // See MuteSink: it may go while it is idle.
                                    {"session.suspend-timeout-seconds", "0"},
                                    {"object.linger", "true"}});
    }
    if (sink == nullptr) {
        return; // comes with a later change of the graph
    }
    for (const std::string& uid : aggregate_.members) {
        const Node* const member = graph.nodeNamed(uid);
        if (member != nullptr && !areLinked(graph, sink->serial, member->serial)) {
            join(*sink, *member);
        }
    }
}

bool AggregateSink::isComplete(const Graph& graph) const {
    const Node* const sink = graph.nodeNamed(aggregate_.uid);
    return sink != nullptr && std::ranges::all_of(aggregate_.members, [&](const std::string& uid) {
               const Node* const member = graph.nodeNamed(uid);
               return member == nullptr || areLinked(graph, sink->serial, member->serial);
           });
}

void AggregateSink::join(const Node& sink, const Node& member) {
    const auto from = monitorPorts(sink);
    const auto to = playbackPorts(member);
    const bool isReady = from.size() >= 2 && !to.empty();
    if (!isReady || !joined_.emplace(sink.serial, member.serial).second) {
        return;
    }
    for (std::size_t side = 0; side < 2; ++side) {
        const Port& input = to[std::min(side, to.size() - 1)];
        // The link stays when this handle goes.
        static_cast<void>(
            connection_.create("link-factory",
                               PW_TYPE_INTERFACE_Link,
                               PW_VERSION_LINK,
                               {{PW_KEY_LINK_OUTPUT_PORT, std::to_string(from[side].id)},
                                {PW_KEY_LINK_INPUT_PORT, std::to_string(input.id)},
                                {"object.linger", "true"}}));
    }
}

} // namespace velmora::pipewire
