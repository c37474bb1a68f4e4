#include "platform/pipewire/keep/AggregateSink.h"

#include "platform/pipewire/view/Devices.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace velmora::pipewire {
namespace {

/// What is played into a sink comes out of its monitor ports.
std::vector<Port> monitorPorts(const Node& sink) {
    std::vector<Port> ports;
    std::ranges::copy_if(
        sink.ports, std::back_inserter(ports), [](const Port& port) { return port.isOutput; });
    return ports;
}

} // namespace

AggregateSink::AggregateSink(Connection& connection,
                             const Graph& graph,
                             PublicAggregate aggregate,
                             std::function<void()> changed)
    : connection_(connection), graph_(graph), aggregate_(std::move(aggregate)),
      links_(connection, graph, LinkSet::Lifetime::lingering, std::move(changed)) {
}

std::optional<LinkSet::Clock::time_point> AggregateSink::follow(LinkSet::Clock::time_point now) {
    if (graph_.nodeNamed(aggregate_.uid) == nullptr && !sink_) {
        makeSink();
    }
    std::set<WantedLink> wanted;
    for (const std::string& uid : aggregate_.members) {
        if (const Node* const member = graph_.nodeWithUid(uid)) {
            const auto links = linksTo(*member);
            wanted.insert(links.begin(), links.end());
        }
    }
    return links_.apply(wanted, now);
}

bool AggregateSink::isComplete() const {
    return std::ranges::all_of(aggregate_.members, [this](const std::string& uid) {
        const Node* const member = graph_.nodeWithUid(uid);
        const auto links = member == nullptr ? std::vector<WantedLink>{} : linksTo(*member);
        return member == nullptr ||
               (!links.empty() && std::ranges::all_of(links, [this](const WantedLink& link) {
                   return graph_.linkBetween(link.output, link.input) != nullptr;
               }));
    });
}

void AggregateSink::makeSink() {
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

std::vector<WantedLink> AggregateSink::linksTo(const Node& member) const {
    const Node* const sink = graph_.nodeNamed(aggregate_.uid);
    const auto from = sink == nullptr ? std::vector<Port>{} : monitorPorts(*sink);
    const auto to = playbackPorts(member);
    std::vector<WantedLink> links;
    for (std::size_t side = 0; side < 2 && from.size() >= 2 && !to.empty(); ++side) {
        const Port& input = to[std::min(side, to.size() - 1)];
        links.push_back({from[side].serial, input.serial, from[side].id, input.id});
    }
    return links;
}

void AggregateSinks::want(PublicAggregate aggregate) {
    const std::string uid = aggregate.uid;
    wanted_.insert_or_assign(uid, std::move(aggregate));
}

void AggregateSinks::remove(const std::string& uid) {
    wanted_.erase(uid);
    sinks_.erase(uid);
    if (const Node* const sink = graph_.nodeNamed(uid)) {
        connection_.destroyGlobal(sink->id);
    }
}

std::vector<std::string> AggregateSinks::wanted() const {
    std::vector<std::string> uids;
    for (const auto& [uid, aggregate] : wanted_) {
        uids.push_back(uid);
    }
    return uids;
}

void AggregateSinks::renew() {
    for (const std::string& uid : wanted()) {
        sinks_.erase(uid);
        if (const Node* const old = graph_.nodeNamed(uid)) {
            connection_.destroyGlobal(old->id);
        }
    }
}

std::optional<LinkSet::Clock::time_point> AggregateSinks::follow(LinkSet::Clock::time_point now) {
    std::optional<LinkSet::Clock::time_point> comeAgain;
    for (const auto& [uid, aggregate] : wanted_) {
        auto& sink = sinks_[uid];
        if (!sink) {
            sink = std::make_unique<AggregateSink>(connection_, graph_, aggregate, changed_);
        }
        if (const auto due = sink->follow(now)) {
            comeAgain = std::min(comeAgain.value_or(*due), *due);
        }
    }
    return comeAgain;
}

bool AggregateSinks::isComplete(const std::string& uid) const {
    const auto sink = sinks_.find(uid);
    return sink != sinks_.end() && sink->second->isComplete();
}

} // namespace velmora::pipewire
