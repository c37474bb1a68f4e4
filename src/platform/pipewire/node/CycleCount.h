// CycleCount.h: how a node is called, and how often the clock went on without it.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstdint>

namespace velmora::pipewire {

/// One cycle of the graph, as its clock tells it.
struct Cycle {
    std::uint32_t clock{};    ///< which one
    std::uint64_t position{}; ///< frames
    std::uint32_t frames{};   ///< length of the block
    std::uint32_t rateHz{};
    std::uint64_t clockLost{}; ///< frames that the clock itself lost so far, where it says so
};

/// A cycle in which somebody before us is late ends without us, and so does one in which we are:
/// the clock is further on at our next call than the blocks explain.
class CycleCount {
public:
    /// Threads: the node's real-time thread. Real-time: yes.
    void begin(const Cycle& now) noexcept {
        rateHz_.store(now.rateHz, std::memory_order_relaxed);
        frames_.store(now.frames, std::memory_order_relaxed);
        const bool isBegun = begins_.exchange(false, std::memory_order_relaxed);
        // Where the length changes, clocks do not agree on which block the new one counts for.
        if (!isBegun && now.clock == latest_.clock && now.frames == latest_.frames) {
            missed_.fetch_add(missedSince(now), std::memory_order_relaxed);
        }
        latest_ = now;
    }

    /// What lies between the last call and the next one was not missed: the node was not running.
    /// Threads: any. Real-time: yes.
    void restart() noexcept { begins_.store(true, std::memory_order_relaxed); }

    // Of the latest cycle; 0 before the first. Threads: any. Real-time: yes.
    [[nodiscard]] std::uint32_t rateHz() const noexcept {
        return rateHz_.load(std::memory_order_relaxed);
    }
    [[nodiscard]] std::uint32_t frames() const noexcept {
        return frames_.load(std::memory_order_relaxed);
    }

    /// So far. Threads: any. Real-time: yes.
    [[nodiscard]] std::uint64_t missed() const noexcept {
        return missed_.load(std::memory_order_relaxed);
    }

private:
    [[nodiscard]] std::uint64_t missedSince(const Cycle& now) const noexcept {
        // A clock that was set back gives a huge number here. Whoever is away for half a second was
        // not late but stopped, as when the machine slept.
        const std::uint64_t gap = now.position - (latest_.position + latest_.frames);
        if (now.frames == 0 || gap >= now.rateHz / 2) {
            return 0;
        }
        const std::uint64_t own = (gap + now.frames - 1) / now.frames;
        const std::uint64_t clocks = now.clockLost > latest_.clockLost ? 1 : 0;
        return std::max(own, clocks);
    }

    static_assert(std::atomic<std::uint32_t>::is_always_lock_free &&
                  std::atomic<std::uint64_t>::is_always_lock_free &&
                  std::atomic<bool>::is_always_lock_free);

    Cycle latest_; // real-time thread
    // None of these says anything about other memory, hence relaxed.
    std::atomic<bool> begins_{true};
    std::atomic<std::uint32_t> rateHz_{0};
    std::atomic<std::uint32_t> frames_{0};
    std::atomic<std::uint64_t> missed_{0};
};

} // namespace velmora::pipewire
