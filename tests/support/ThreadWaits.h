// ThreadWaits.h: how long a thread that wants a processor has had to wait for one.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <string_view>
#include <thread>

namespace velmora::support {

/// A thread of this process by its name; 0 when there is none, or more than one.
[[nodiscard]] std::int32_t threadNamed(std::string_view name);

/// Looks at the scheduler's account of one thread of this process every half millisecond, at a
/// real-time priority where that may be had, so that the single waits can be told apart. Without
/// it, several may count as one.
class ThreadWaits {
public:
    /// Errors: throws std::runtime_error when there is no such account.
    explicit ThreadWaits(std::int32_t thread);
    ~ThreadWaits();
    ThreadWaits(const ThreadWaits&) = delete;
    ThreadWaits& operator=(const ThreadWaits&) = delete;

    /// The longest one since the last call. Threads: one.
    [[nodiscard]] std::chrono::nanoseconds takeLongest() {
        return std::chrono::nanoseconds(longest_.exchange(0));
    }

private:
    [[nodiscard]] std::int64_t waited() const;
    void watch(const std::stop_token& stop);

    int account_;
    std::atomic<std::int64_t> longest_{0}; // nanoseconds
    std::jthread watcher_;
};

} // namespace velmora::support
