// SocketWatch.h: tells when a daemon may have come.
#pragma once

#include "platform/pipewire/daemon/Loop.h"

#include <functional>
#include <string>

namespace velmora::pipewire {

/// Watches the folder in which a daemon makes the socket that we connect to. Where it cannot be
/// watched nothing is told.
/// Threads: any, with the loop's lock, or while the loop does not run.
class SocketWatch {
public:
    /// @param came  called on the loop's thread when the socket was made; it may take its maker a
    ///              moment more to answer
    SocketWatch(const Loop& loop, std::function<void()> came);
    ~SocketWatch();
    SocketWatch(const SocketWatch&) = delete;
    SocketWatch& operator=(const SocketWatch&) = delete;

private:
    void onEvents(int descriptor) const;

    pw_loop* loop_;
    std::function<void()> came_;
    std::string name_; // what the socket's name begins with
    spa_source* source_ = nullptr;
};

} // namespace velmora::pipewire
