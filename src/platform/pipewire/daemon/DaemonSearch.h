// DaemonSearch.h: when to try to connect again.
#pragma once

#include "platform/GrowingPause.h"
#include "platform/pipewire/daemon/Loop.h"
#include "platform/pipewire/daemon/SocketWatch.h"

#include <functional>
#include <memory>

namespace velmora::pipewire {

/// After a loss soon, then less and less often; at once when a daemon makes its socket.
/// Threads: any, with the loop's lock.
class DaemonSearch {
public:
    /// @param attempt  called on the loop's thread
    DaemonSearch(const Loop& loop, std::function<void()> attempt);

    /// No daemon answers, or it answers no more.
    void goOn();
    /// A daemon took the connection.
    void pause() { watch_.reset(); }
    /// It has told all that there is: the next loss is a new one.
    void end() { pause_.restart(); }

private:
    const Loop& loop_;
    LoopTimer timer_;
    GrowingPause pause_;
    std::unique_ptr<SocketWatch> watch_;
};

} // namespace velmora::pipewire
