// LinkSet.h: keeps the links that are wanted.
#pragma once

#include "platform/pipewire/daemon/Connection.h"
#include "platform/pipewire/daemon/Handles.h"
#include "platform/pipewire/view/LinkAttempts.h"
#include "platform/pipewire/view/Routes.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>

namespace velmora::pipewire {

/// Threads: any, with the control loop's lock.
class LinkSet {
public:
    using Clock = LinkAttempts::Clock;
    enum class Lifetime {
        ours,     ///< they go with this object, or with our connection
        lingering ///< they stay; those that an earlier run has left are kept
    };

    /// @param changed  called on the control thread when the daemon has refused or removed a link,
    ///                 or when sound began or ceased to pass it
    LinkSet(Connection& connection,
            const Graph& graph,
            Lifetime lifetime,
            std::function<void()> changed);
    ~LinkSet();
    LinkSet(const LinkSet&) = delete;
    LinkSet& operator=(const LinkSet&) = delete;

    /// Lets go of links that are no longer wanted and asks for those that are missing and due. A
    /// link that lets no sound pass although both its nodes run is replaced. Returns when to come
    /// again, if anything is still missing.
    std::optional<Clock::time_point> apply(const std::set<WantedLink>& wanted,
                                           Clock::time_point now);
    /// To be called before the connection closes.
    void clear();

private:
    class Made;
    struct Entry {
        std::unique_ptr<Made> link;
        LinkAttempts attempts;
        std::optional<Clock::time_point> stalledSince;
    };
    std::optional<Clock::time_point>
    keep(const WantedLink& wanted, Entry& entry, Clock::time_point now);
    [[nodiscard]] bool areBothRunning(const WantedLink& wanted) const;
    [[nodiscard]] ProxyHandle findOrRequest(const WantedLink& wanted, bool isReplacing);

    Connection& connection_;
    const Graph& graph_;
    Lifetime lifetime_;
    std::function<void()> changed_;
    std::map<WantedLink, Entry> links_;
};

} // namespace velmora::pipewire
