// RouteWriter.h: has the session manager remember a device for a kind of stream.
#pragma once

#include "platform/pipewire/daemon/Connection.h"
#include "platform/pipewire/daemon/Handles.h"
#include "platform/pipewire/keep/RouteMemory.h"
#include "platform/pipewire/view/Graph.h"

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>

namespace velmora::pipewire {

/// What is to be remembered, by what: `node.name` of a device, which need not be there; empty =
/// none.
using StoredRoutes = std::map<RouteKey, std::string>;

/// The session manager remembers what a stream was last sent to, and nothing else makes it. So a
/// stream of ours that plays nothing stands for the kind for a moment, and is told to go there. A
/// device that is not there has nothing that could be gone to; then the stand-in bears its name and
/// is told to go to itself.
///
/// Threads: any, with the control loop's lock.
class RouteWriter {
public:
    using Clock = std::chrono::steady_clock;

    /// @param memory   a choice that somebody makes meanwhile is left alone
    /// @param newName  gives a `node.name` that was never used before
    /// @param done     called from `follow` when nothing is left to do for it
    RouteWriter(Connection& connection,
                const Graph& graph,
                const RouteMemory& memory,
                std::function<std::string()> newName,
                std::function<void(const RouteKey& key)> done)
        : connection_(connection), graph_(graph), memory_(memory), newName_(std::move(newName)),
          done_(std::move(done)) {}

    void write(const RouteKey& key, const std::string& device);

    /// To be called after every change of the graph. Returns when to come again, if anything is
    /// still to be done.
    std::optional<Clock::time_point> follow(Clock::time_point now);
    /// The session manager has gone: there is nothing to be done any more.
    void giveUp();
    /// To be called before the connection closes; what is not done by then will not be.
    void clear() { standIns_.clear(); }

private:
    struct StandIn {
        ProxyHandle node;
        std::string device;
        bool isNamesake = false;
        std::size_t attempts = 1;
        std::size_t told = 0;                      ///< times
        std::optional<Clock::time_point> since{};  ///< it was first looked for
        std::optional<Clock::time_point> toldAt{}; ///< the first time
        std::optional<Clock::time_point>
            leftAt{}; ///< nothing is told any more; its work is looked at
    };

    [[nodiscard]] StandIn standInFor(const RouteKey& key, const std::string& device);
    /// Each returns when to come again; none when it is done.
    std::optional<Clock::time_point>
    follow(const RouteKey& key, StandIn& standIn, Clock::time_point now);
    std::optional<Clock::time_point>
    followTold(StandIn& namesake, const Node& node, Clock::time_point now);
    std::optional<Clock::time_point>
    followLeft(const RouteKey& key, StandIn& standIn, Clock::time_point now);
    static Clock::time_point leave(StandIn& standIn, Clock::time_point now);
    void tell(const Node& node, StandIn& standIn, Clock::time_point now);

    Connection& connection_;
    const Graph& graph_;
    const RouteMemory& memory_;
    std::function<std::string()> newName_;
    std::function<void(const RouteKey& key)> done_;
    std::map<RouteKey, StandIn> standIns_;
};

} // namespace velmora::pipewire
