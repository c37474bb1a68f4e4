// Mailbox.h: hands whole values to an audio thread that never waits.
#pragma once

#include <array>
#include <atomic>
#include <type_traits>

namespace velmora {

/// Three slots: one being written, one being read, and the latest complete one between them. Both
/// sides only ever swap an index, so that neither waits for the other and no value is torn.
///
/// Threads: one poster at a time (posters serialise among themselves), one taker.
template <typename T>
class Mailbox {
    static_assert(std::is_nothrow_copy_assignable_v<T>);

public:
    /// Replaces what the taker has not seen yet. Threads: posting side. Real-time: yes.
    void post(const T& value) noexcept {
        slots_[writing_] = value;
        // Release publishes the slot; acquire: the slot that comes back was read by the taker.
        writing_ = middle_.exchange(writing_ | fresh, std::memory_order_acq_rel) & index;
    }

    /// The newest value posted since the last call, or null. It stays valid until the next call.
    /// Threads: taking side. Real-time: yes.
    [[nodiscard]] const T* take() noexcept {
        if ((middle_.load(std::memory_order_relaxed) & fresh) == 0U) {
            return nullptr;
        }
        reading_ = middle_.exchange(reading_, std::memory_order_acq_rel) & index;
        return &slots_[reading_];
    }

private:
    static constexpr unsigned index = 3U;
    static constexpr unsigned fresh = 4U;
    static_assert(std::atomic<unsigned>::is_always_lock_free);

    std::array<T, 3> slots_{};
    unsigned writing_{0};             // posting side
    std::atomic<unsigned> middle_{1}; // both
    unsigned reading_{2};             // taking side
};

} // namespace velmora
