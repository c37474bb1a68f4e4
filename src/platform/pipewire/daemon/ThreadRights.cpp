#include "platform/pipewire/daemon/ThreadRights.h"

#include <sched.h>
#include <unistd.h>

namespace velmora::pipewire {

ThreadId currentThread() {
    return gettid();
}

std::optional<bool> isRealTime(ThreadId thread) {
    const int policy = thread == 0 ? -1 : sched_getscheduler(thread);
    if (policy < 0) {
        return std::nullopt;
    }
    const int kind = policy & ~SCHED_RESET_ON_FORK;
    return kind == SCHED_FIFO || kind == SCHED_RR;
}

} // namespace velmora::pipewire
