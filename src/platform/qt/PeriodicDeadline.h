// PeriodicDeadline.h: when a repeating timer fires next.
#pragma once

#include <algorithm>
#include <chrono>

namespace velmora {

/// Deadlines on a fixed grid from the start, so that a timer in whole milliseconds keeps the period
/// on average. Deadlines already missed are skipped.
///
/// Threads: one owner.
class PeriodicDeadline {
public:
    using Clock = std::chrono::steady_clock;

    explicit PeriodicDeadline(std::chrono::nanoseconds period,
                              Clock::time_point start = Clock::now())
        : period_(std::max(period, std::chrono::nanoseconds{1})), next_(start + period_) {}

    /// Called when the timer fires: the wait until the next deadline, in the timer's unit.
    [[nodiscard]] std::chrono::milliseconds advance(Clock::time_point now) {
        // A timer may fire a little early; that deadline counts as reached.
        const auto due = std::max(next_, now);
        next_ += period_ * ((due - next_) / period_ + 1);
        return std::chrono::ceil<std::chrono::milliseconds>(next_ - now);
    }

private:
    std::chrono::nanoseconds period_;
    Clock::time_point next_; // the deadline that the running wait ends at
};

} // namespace velmora
