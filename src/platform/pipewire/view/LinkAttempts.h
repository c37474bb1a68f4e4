// LinkAttempts.h: how often and how soon one link is asked for again.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>

namespace velmora::pipewire {

/// When a link that the daemon refuses or removes is asked for again: at once, then after longer
/// and longer pauses, then never, so that two ports that cannot be joined do not keep both sides
/// busy. A link that has lasted begins anew.
/// Threads: one at a time.
class LinkAttempts {
public:
    using Clock = std::chrono::steady_clock;

    /// When the next request is due; none after the last one.
    [[nodiscard]] std::optional<Clock::time_point> next() const;
    void made(Clock::time_point now);
    /// The last request's link is still there at `now`.
    void lasts(Clock::time_point now);

private:
    std::size_t count_ = 0;
    Clock::time_point last_;
};

} // namespace velmora::pipewire
