// AggregateSink.h: a public device that plays into several others at once.
#pragma once

#include "platform/pipewire/daemon/Connection.h"
#include "platform/pipewire/daemon/Handles.h"
#include "platform/pipewire/keep/LinkSet.h"
#include "platform/pipewire/view/Graph.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
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
/// Threads: any, with the control loop's lock.
class AggregateSink {
public:
    /// @param changed  as `LinkSet`
    AggregateSink(Connection& connection,
                  const Graph& graph,
                  PublicAggregate aggregate,
                  std::function<void()> changed);

    /// To be called after every change of the graph. Returns when to come again, if anything is
    /// still missing.
    std::optional<LinkSet::Clock::time_point> follow(LinkSet::Clock::time_point now);

    /// True once it plays into every member that is there.
    [[nodiscard]] bool isComplete() const;

private:
    void makeSink();
    /// Empty while the sink or the member has no ports.
    [[nodiscard]] std::vector<WantedLink> linksTo(const Node& member) const;

    Connection& connection_;
    const Graph& graph_;
    PublicAggregate aggregate_;
    ProxyHandle sink_;
    LinkSet links_;
};

/// All that are wanted, by UID.
/// Threads: any, with the control loop's lock.
class AggregateSinks {
public:
    /// @param changed  as `LinkSet`
    AggregateSinks(Connection& connection, const Graph& graph, std::function<void()> changed)
        : connection_(connection), graph_(graph), changed_(std::move(changed)) {}

    void want(PublicAggregate aggregate);
    /// Removes it, also one that an earlier run has left.
    void remove(const std::string& uid);
    [[nodiscard]] std::vector<std::string> wanted() const;
    /// The session manager has gone: its successor gets new ones, see `Session::passLosses`.
    void renew();

    /// As for one.
    std::optional<LinkSet::Clock::time_point> follow(LinkSet::Clock::time_point now);
    [[nodiscard]] bool isComplete(const std::string& uid) const;
    /// To be called before the connection closes; what is wanted stays wanted.
    void clear() { sinks_.clear(); }

private:
    Connection& connection_;
    const Graph& graph_;
    std::function<void()> changed_;
    std::map<std::string, PublicAggregate> wanted_;
    std::map<std::string, std::unique_ptr<AggregateSink>> sinks_;
};

} // namespace velmora::pipewire
