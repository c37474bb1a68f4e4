// LinkSet.h: the links that we made, kept equal to the links that are wanted.
#pragma once

#include "platform/pipewire/Connection.h"
#include "platform/pipewire/Handles.h"
#include "platform/pipewire/Routes.h"

#include <map>
#include <memory>
#include <set>

namespace velmora::pipewire {

/// Threads: needs the control loop's lock.
class LinkSet {
public:
    explicit LinkSet(Connection& connection);
    ~LinkSet();
    LinkSet(const LinkSet&) = delete;
    LinkSet& operator=(const LinkSet&) = delete;

    /// Removes links that are no longer wanted and asks for those that are missing. A link that the
    /// daemon refuses or removes is asked for again with the next change, a few times.
    void apply(const std::set<WantedLink>& wanted);
    /// To be called before the connection closes.
    void clear();

private:
    class Made;
    struct Entry {
        std::unique_ptr<Made> link;
        int attempts{};
    };

    Connection& connection_;
    std::map<WantedLink, Entry> links_;
};

} // namespace velmora::pipewire
