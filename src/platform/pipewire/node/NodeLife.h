// NodeLife.h: what a node of ours tells about itself.
#pragma once

#include <atomic>
#include <cstdint>

namespace velmora::pipewire {

/// Shared by the node and by whoever watches it without keeping it.
/// Threads: any. Real-time: yes.
class NodeLife {
public:
    [[nodiscard]] bool isAlive() const noexcept { return stage() == Stage::alive; }
    /// It ended without having been closed.
    [[nodiscard]] bool isDead() const noexcept { return stage() == Stage::dead; }

    /// Its connection has gone, or somebody else has removed it: for good, also where it is still
    /// called. Whoever notices first says so. A node that is being closed does not die.
    void end() noexcept {
        auto expected = Stage::alive;
        stage_.compare_exchange_strong(expected, Stage::dead, std::memory_order_relaxed);
    }
    /// Hz, of the latest cycle; 0 before the first.
    [[nodiscard]] std::uint32_t rateHz() const noexcept {
        return rateHz_.load(std::memory_order_relaxed);
    }
    /// Threads: the node's real-time thread.
    void setRate(std::uint32_t hz) noexcept { rateHz_.store(hz, std::memory_order_relaxed); }

    /// We close it ourselves.
    void close() noexcept { stage_.store(Stage::closed, std::memory_order_relaxed); }

private:
    enum class Stage { alive, dead, closed };
    static_assert(std::atomic<Stage>::is_always_lock_free &&
                  std::atomic<std::uint32_t>::is_always_lock_free);

    [[nodiscard]] Stage stage() const noexcept { return stage_.load(std::memory_order_relaxed); }

    // Neither says anything about other memory, hence relaxed.
    std::atomic<Stage> stage_{Stage::alive};
    std::atomic<std::uint32_t> rateHz_{0};
};

} // namespace velmora::pipewire
