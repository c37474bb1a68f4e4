// NodeLife.h: what a node of ours tells about itself.
#pragma once

#include "platform/pipewire/node/CycleCount.h"

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
    [[nodiscard]] CycleCount& cycles() noexcept { return cycles_; }

    /// We close it ourselves.
    void close() noexcept { stage_.store(Stage::closed, std::memory_order_relaxed); }

private:
    enum class Stage { alive, dead, closed };
    static_assert(std::atomic<Stage>::is_always_lock_free);

    [[nodiscard]] Stage stage() const noexcept { return stage_.load(std::memory_order_relaxed); }

    // Says nothing about other memory, hence relaxed.
    std::atomic<Stage> stage_{Stage::alive};
    CycleCount cycles_;
};

} // namespace velmora::pipewire
