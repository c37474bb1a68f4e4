// RightsRequest.h: asks RealtimeKit to send a thread before those of other programs.
#pragma once

#include "platform/pipewire/daemon/Loop.h"
#include "platform/pipewire/daemon/ThreadRights.h"

namespace velmora::pipewire {

/// Who may not raise a thread by himself may ask this service of the system's D-Bus. It can take
/// seconds to start, and nobody is to wait for it: everything is written in one go, and its answer
/// is what it does to the thread. It answers those only that are still there.
///
/// Threads: any, with the loop's lock, or while the loop does not run. Errors: none; without bus or
/// service the thread stays as it is.
class RightsRequest {
public:
    explicit RightsRequest(const Loop& loop) : leave_(loop, [this] { leave(); }) {}
    ~RightsRequest() { leave(); }
    RightsRequest(const RightsRequest&) = delete;
    RightsRequest& operator=(const RightsRequest&) = delete;

    /// For a thread of this process. Never blocks.
    void send(ThreadId thread);

private:
    void leave();

    LoopTimer leave_;
    int bus_ = -1;
};

} // namespace velmora::pipewire
