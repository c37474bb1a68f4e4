// Wait.h: bounded waiting for what other programs do.
#pragma once

#include <chrono>
#include <concepts>
#include <functional>
#include <thread>

namespace velmora::support {

/// Long enough for a loaded machine; only a failure ever waits this long.
inline constexpr std::chrono::milliseconds patience{10'000};

/// What the waiting thread does between two looks: a program with an event loop of its own lets it
/// go on here. Threads: main.
inline std::function<void()> betweenLooks = [] {};

/// Looks until `condition` holds; false when it did not within `limit`.
template <std::predicate Condition>
[[nodiscard]] bool waitUntil(Condition condition, std::chrono::milliseconds limit = patience) {
    constexpr std::chrono::milliseconds lookEvery{10};
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end) {
            return false;
        }
        betweenLooks();
        std::this_thread::sleep_for(lookEvery);
    }
    return true;
}

} // namespace velmora::support
