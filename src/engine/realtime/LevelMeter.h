// LevelMeter.h: the loudest sample since somebody last looked.
#pragma once

#include <atomic>

namespace velmora {

/// Units: linear, 0 = silence, 1 = full scale.
class LevelMeter {
public:
    /// Keeps the larger of `peak` and what is stored; a peak that is not a number counts for
    /// nothing. Threads: capture, one only. Real-time: yes (lock-free, no loop).
    void raise(float peak) noexcept {
        float stored = peak_.load(std::memory_order_relaxed);
        if (!(peak > stored)) {
            return;
        }
        // Nobody else raises, so a failed exchange means that the meter was just read: it is 0.
        if (!peak_.compare_exchange_strong(stored, peak, std::memory_order_relaxed)) {
            peak_.store(peak, std::memory_order_relaxed);
        }
    }

    /// Reads the peak and sets it back to 0, in one step. Threads: any but the capture.
    /// Real-time: yes (lock-free).
    [[nodiscard]] float take() noexcept { return peak_.exchange(0.0F, std::memory_order_relaxed); }

private:
    std::atomic<float> peak_{0.0F};
};

} // namespace velmora
