// AggregateSink.h: a public device that plays into several others at once.
#pragma once

#include "platform/pipewire/Connection.h"
#include "platform/pipewire/Graph.h"
#include "platform/pipewire/Handles.h"

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace velmora::pipewire {

struct PublicAggregate {
    std::string uid;
    std::string name;
    std::vector<std::string> members; ///< UIDs of the devices that it plays into
};

/// Keeps the aggregate's sink, and its links to the members, in being.
///
/// Sink and links outlive this program: they are left to the daemon. A member that returns, and a
/// restarted daemon, get them again as long as this object lives. The hardware member becomes the
/// clock by its driver priority and the others follow it, so that no drift arises.
///
/// Threads: needs the control loop's lock.
class AggregateSink {
public:
    AggregateSink(Connection& connection, PublicAggregate aggregate)
        : connection_(connection), aggregate_(std::move(aggregate)) {}

    void follow(const Graph& graph);

    /// True once it plays into every member that is there.
    [[nodiscard]] bool isComplete(const Graph& graph) const;

private:
    void join(const Node& sink, const Node& member);

    Connection& connection_;
    PublicAggregate aggregate_;
    ProxyHandle sink_;
    std::set<std::pair<Serial, Serial>> joined_; // sink and member
};

} // namespace velmora::pipewire
