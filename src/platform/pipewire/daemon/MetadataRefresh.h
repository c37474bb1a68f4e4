// MetadataRefresh.h: has the session manager's metadata read again when changes may be missing.
#pragma once

#include "platform/pipewire/daemon/Loop.h"

#include <functional>

namespace velmora::pipewire {

/// While one client begins to follow the session manager's metadata, the daemon (0.3.65) gives
/// changes to that client only: of 120 changes beside a polling client, 7 were never told. So it is
/// read again shortly after anybody has come.
/// Threads: any, with the loop's lock.
class MetadataRefresh {
public:
    /// @param read  called on the loop's thread
    MetadataRefresh(const Loop& loop, std::function<void()> read);

    void clientCame();

private:
    void onTime();

    std::function<void()> read_;
    LoopTimer timer_;
    bool isDue_ = false;
    bool isAnotherDue_ = false;
};

} // namespace velmora::pipewire
