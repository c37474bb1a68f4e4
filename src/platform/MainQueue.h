// MainQueue.h: work and timers on the main thread.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace velmora {

/// The main thread's queue. Everything handed to it runs on the main thread, one piece at a time,
/// never from inside the call that handed it over.
class MainQueue {
public:
    using Work = std::move_only_function<void()>;

    /// Keeps scheduled work alive; destroying it cancels the work, also from inside the work.
    class Timer {
    public:
        virtual ~Timer() = default;
    };

    virtual ~MainQueue() = default;

    /// Runs `work` as soon as the main thread is free, in the order of the calls.
    /// Threads: any. Real-time: no.
    virtual void post(Work work) = 0;

    /// Runs `work` once, `delay` from now, unless the returned timer is destroyed first.
    /// Threads: main.
    [[nodiscard]] virtual std::unique_ptr<Timer> after(std::chrono::milliseconds delay,
                                                       Work work) = 0;

    /// Runs `work` every `period` until the returned timer is destroyed. A late tick is not
    /// repeated. Threads: main.
    [[nodiscard]] virtual std::unique_ptr<Timer> every(std::chrono::nanoseconds period,
                                                       Work work) = 0;
};

} // namespace velmora
