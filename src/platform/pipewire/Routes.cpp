#include "platform/pipewire/Routes.h"

#include "platform/pipewire/Devices.h"
#include "platform/pipewire/Downmix.h"

#include <algorithm>
#include <array>
#include <functional>
#include <map>

namespace velmora::pipewire {
namespace {

constexpr std::array<std::string_view, 5> tapPorts = {
    own::left, own::right, own::centre, own::surroundLeft, own::surroundRight};

const Node* deviceNamed(const Graph& graph, std::string_view uid) {
    const auto device = findDevice(listDevices(graph), uid);
    return device ? graph.node(device->node) : nullptr;
}

/// Collects the links of one part of the mix after the other.
class Collector {
public:
    Collector(const Graph& graph, const Node& mixNode, const StreamsOf& streamsOf)
        : graph_(graph), streamsOf_(streamsOf) {
        for (const Port& port : mixNode.ports) {
            ports_[port.name] = &port;
        }
    }

    void add(const std::string& part, const TapRoute& route) {
        for (const Serial serial : streamsOf_(route.process)) {
            const Node* const stream = graph_.node(serial);
            for (const TapFeed& feed :
                 stream == nullptr ? std::vector<TapFeed>{} : stereoMixdown(*stream)) {
                const auto input = static_cast<std::size_t>(feed.input);
                if (const Port* const port = ownPort(part, tapPorts.at(input))) {
                    links.insert({feed.port, port->serial, feed.portId, port->id});
                }
            }
        }
    }

    void add(const std::string& part, const PlaybackRoute& route) {
        if (const Node* const device = deviceNamed(graph_, route.deviceUID)) {
            const auto channels = playbackPorts(*device);
            if (channels.size() == 1 && route.map.size() > 1) {
                connect(ownPort(part, own::mono), &channels.front());
                return;
            }
            for (std::size_t at = 0; at < std::min(channels.size(), route.map.size()); ++at) {
                if (route.map[at] == 0 || route.map[at] == 1) {
                    connect(ownPort(part, route.map[at] == 0 ? own::left : own::right),
                            &channels[at]);
                }
            }
        }
    }

    void add(const std::string& part, const RecordingRoute& route) {
        if (const Node* const device = deviceNamed(graph_, route.deviceUID)) {
            const auto channels = recordingPorts(*device);
            for (std::uint32_t at = 0; at < route.channels && at < channels.size(); ++at) {
                connect(&channels[at], ownPort(part, own::channel(at)));
            }
        }
    }

    std::set<WantedLink> links;

private:
    void connect(const Port* output, const Port* input) {
        if (output != nullptr && input != nullptr) {
            links.insert({output->serial, input->serial, output->id, input->id});
        }
    }

    [[nodiscard]] const Port* ownPort(const std::string& part, std::string_view name) const {
        const auto found = ports_.find(own::port(part, name));
        return found == ports_.end() ? nullptr : found->second;
    }

    const Graph& graph_;
    const StreamsOf& streamsOf_;
    std::map<std::string, const Port*, std::less<>> ports_; // of our node
};

} // namespace

std::string own::channel(std::uint32_t index) {
    return "channel_" + std::to_string(index + 1);
}

std::string own::port(const std::string& part, std::string_view purpose) {
    return part + "_" + std::string(purpose);
}

std::set<WantedLink> wantedLinks(const Graph& graph,
                                 std::string_view mixNode,
                                 const Routes& routes,
                                 const StreamsOf& streamsOf) {
    const Node* const node = mixNode.empty() ? nullptr : graph.nodeNamed(mixNode);
    if (node == nullptr) {
        return {};
    }
    Collector collector(graph, *node, streamsOf);
    for (const auto& [part, route] : routes) {
        std::visit([&](const auto& one) { collector.add(part, one); }, route);
    }
    return std::move(collector.links);
}

} // namespace velmora::pipewire
