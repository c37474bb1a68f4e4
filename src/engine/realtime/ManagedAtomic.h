// ManagedAtomic.h: one integer that one thread writes and another reads.
#pragma once

#include <atomic>
#include <cstdint>

namespace velmora {

/// What was written before `store` is visible after the `load` that sees the stored value.
///
/// Threads: any. Real-time: yes (lock-free).
class ManagedAtomic {
public:
    [[nodiscard]] std::int64_t load() const noexcept {
        return value_.load(std::memory_order_acquire); // pairs with `store`
    }
    void store(std::int64_t value) noexcept { value_.store(value, std::memory_order_release); }

private:
    static_assert(std::atomic<std::int64_t>::is_always_lock_free);

    std::atomic<std::int64_t> value_{0};
};

} // namespace velmora
