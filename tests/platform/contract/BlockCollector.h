// BlockCollector.h: keeps what a real-time callback was given, for a test to look at.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <span>
#include <vector>

namespace velmora {

/// Interleaved or single-channel samples, up to a fixed number; what comes later is dropped.
///
/// Threads: `add` from one real-time thread, the rest from the test's.
class BlockCollector {
public:
    explicit BlockCollector(std::size_t capacity) : samples_(capacity) {}

    /// Real-time: yes (lock-free).
    void add(std::span<const float> block) noexcept {
        ++blocks_;
        const std::size_t at = size_.load(std::memory_order_relaxed);
        const std::size_t taken = std::min(block.size(), samples_.size() - at);
        std::copy_n(block.begin(), taken, samples_.begin() + static_cast<std::ptrdiff_t>(at));
        size_.store(at + taken, std::memory_order_release); // read by `all`
    }

    [[nodiscard]] std::size_t blocks() const noexcept { return blocks_; }
    [[nodiscard]] bool isFull() const noexcept { return size_ == samples_.size(); }

    /// The latest `count` of what has arrived so far.
    [[nodiscard]] std::vector<float> latest(std::size_t count) const {
        const std::size_t size = size_.load(std::memory_order_acquire);
        const auto end = samples_.begin() + static_cast<std::ptrdiff_t>(size);
        return {end - static_cast<std::ptrdiff_t>(std::min(count, size)), end};
    }

private:
    std::vector<float> samples_;
    std::atomic<std::size_t> size_{0};
    std::atomic<std::size_t> blocks_{0};
};

/// One channel of interleaved stereo.
inline std::vector<float> sideOf(const std::vector<float>& interleaved, std::size_t channel) {
    std::vector<float> side;
    for (std::size_t index = channel; index < interleaved.size(); index += 2) {
        side.push_back(interleaved[index]);
    }
    return side;
}

} // namespace velmora
