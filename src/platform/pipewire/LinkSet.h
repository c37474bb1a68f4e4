// LinkSet.h: the links that we made, kept equal to the links that are wanted.
#pragma once

#include "platform/pipewire/Connection.h"
#include "platform/pipewire/Handles.h"
#include "platform/pipewire/LinkAttempts.h"
#include "platform/pipewire/Routes.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>

namespace velmora::pipewire {

/// Threads: needs the control loop's lock.
class LinkSet {
public:
    using Clock = LinkAttempts::Clock;
    /// Whether sound would pass a link now: both its nodes run.
    using IsNeeded = std::function<bool(const WantedLink&)>;

    /// @param changed  called on the control thread when the daemon has refused or removed a link,
    ///                 or when sound began or ceased to pass it
    LinkSet(Connection& connection, std::function<void()> changed);
    ~LinkSet();
    LinkSet(const LinkSet&) = delete;
    LinkSet& operator=(const LinkSet&) = delete;

    /// Removes links that are no longer wanted and asks for those that are missing and due. A link
    /// that lets no sound pass although both its nodes run is replaced.
    /// Returns when to come again, if anything is still missing.
    std::optional<Clock::time_point>
    apply(const std::set<WantedLink>& wanted, const IsNeeded& isNeeded, Clock::time_point now);
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
    keep(const WantedLink& wanted, Entry& entry, bool isNeeded, Clock::time_point now);

    Connection& connection_;
    std::function<void()> changed_;
    std::map<WantedLink, Entry> links_;
};

} // namespace velmora::pipewire
