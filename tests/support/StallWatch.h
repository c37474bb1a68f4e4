// StallWatch.h: notices when the machine itself stands still.
#pragma once

#include <atomic>
#include <chrono>
#include <thread>

namespace velmora::support {

/// Sleeps in short steps and remembers how late it woke up at most. On a virtual machine whose
/// processors were given to somebody else every thread is late by that much, the sound's too.
class StallWatch {
public:
    using Clock = std::chrono::steady_clock;

    void restart() { longest_ = Clock::duration::zero(); }
    [[nodiscard]] Clock::duration longest() const { return longest_; }

private:
    void watch(const std::stop_token& stop) {
        constexpr std::chrono::milliseconds step{2};
        while (!stop.stop_requested()) {
            const auto due = Clock::now() + step;
            std::this_thread::sleep_until(due);
            longest_ = std::max(longest_.load(), Clock::now() - due);
        }
    }

    std::atomic<Clock::duration> longest_{Clock::duration::zero()};
    std::jthread thread_{[this](const std::stop_token& stop) { watch(stop); }};
};

} // namespace velmora::support
