#include "platform/pipewire/daemon/ThreadRights.h"

#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

namespace velmora::pipewire {

ThreadId currentThread() {
    return gettid();
}

bool goFirst(ThreadId thread) {
    const sched_param lowest{.sched_priority = sched_get_priority_min(SCHED_RR)};
    const sched_param usual{};
    return sched_setscheduler(thread, SCHED_RR | SCHED_RESET_ON_FORK, &lowest) == 0 ||
           (sched_setscheduler(thread, SCHED_OTHER | SCHED_RESET_ON_FORK, &usual) == 0 &&
            setpriority(PRIO_PROCESS, static_cast<id_t>(thread), firstNiceLevel) == 0);
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
