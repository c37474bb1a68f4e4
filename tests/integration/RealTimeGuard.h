// RealTimeGuard.h: watches real-time callbacks for what they must not do.
#pragma once

#include <atomic>
#include <cstdint>

namespace velmora {

/// What was seen on real-time threads while watching.
struct RealTimeSightings {
    std::int64_t callbacks{};
    std::int64_t allocations{}; ///< anywhere on such a thread, the sound server's own part included
    std::int64_t releases{};
    std::int64_t systemCalls{};       ///< callbacks that made any; inside the callback only
    std::int64_t firstSystemCall{-1}; ///< its number, −1 = none
    std::int64_t contendedLocks{};    ///< inside the callback; the design's short locks may wait
    std::int64_t plainLocks{}; ///< inside the callback, of mutexes without priority inheritance
};

/// Forgets what was seen and begins to watch. False when this kernel cannot report system calls;
/// the rest is watched all the same.
/// Threads: main.
bool beginWatching();
/// Threads: main.
[[nodiscard]] RealTimeSightings endWatching();
/// While watching. Threads: main.
[[nodiscard]] RealTimeSightings sightingsSoFar();

/// Put one around the body of a real-time callback. The thread counts as a real-time thread from
/// its first one on. Threads: real-time.
///
/// The program's allocator functions and pthread_mutex_lock are replaced by counting ones
/// (RealTimeGuard.cpp); a system call is seen by the kernel's syscall user dispatch, which turns it
/// into a signal.
class RealTimeGuard {
public:
    RealTimeGuard();
    ~RealTimeGuard();
    RealTimeGuard(const RealTimeGuard&) = delete;
    RealTimeGuard& operator=(const RealTimeGuard&) = delete;
};

} // namespace velmora
