#include "platform/pipewire/daemon/Loop.h"

#include <new>

namespace velmora::pipewire {

Loop::Loop(const char* name) : loop_(pw_thread_loop_new(name, nullptr)) {
    if (!loop_) {
        throw std::bad_alloc();
    }
}

bool Loop::Lock::wait(std::chrono::milliseconds limit, const std::function<bool()>& condition) {
    timespec deadline{};
    pw_thread_loop_get_time(
        loop_, &deadline, std::chrono::duration_cast<std::chrono::nanoseconds>(limit).count());
    while (!condition()) {
        if (pw_thread_loop_timed_wait_full(loop_, &deadline) < 0) {
            return condition();
        }
    }
    return true;
}

LoopWork::LoopWork(const Loop& loop, std::function<void()> work)
    : loop_(loop.get()), work_(std::move(work)),
      source_(pw_loop_add_event(
          loop_, [](void* self, std::uint64_t) { static_cast<LoopWork*>(self)->work_(); }, this)) {
}

LoopWork::~LoopWork() {
    pw_loop_destroy_source(loop_, source_);
}

void LoopWork::request() {
    pw_loop_signal_event(loop_, source_);
}

LoopTimer::LoopTimer(const Loop& loop, std::function<void()> work)
    : loop_(loop.get()), work_(std::move(work)),
      source_(pw_loop_add_timer(
          loop_, [](void* self, std::uint64_t) { static_cast<LoopTimer*>(self)->work_(); }, this)) {
}

LoopTimer::~LoopTimer() {
    pw_loop_destroy_source(loop_, source_);
}

void LoopTimer::start(std::chrono::milliseconds delay) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(delay);
    timespec once{.tv_sec = seconds.count(),
                  .tv_nsec = std::chrono::nanoseconds(delay - seconds).count()};
    pw_loop_update_timer(loop_, source_, &once, nullptr, false);
}

} // namespace velmora::pipewire
