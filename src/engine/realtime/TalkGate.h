// TalkGate.h: lets an output be heard, or not, without a click.
#pragma once

#include <atomic>
#include <cstdint>
#include <span>

namespace velmora {

/// The last thing that happens to an output's samples. Opening and closing fade; turned round on
/// the way, a fade goes back from where it is. Open, it touches no sample; closed, all are zero.
///
/// Formula: g = x²·(3 − 2·x), x = n / N; n moves by one each frame, towards N = 8 ms when open and
///          towards 0 when closed. The gain of a frame is that after the move.
/// Threads: `process` on the render thread; `begin` on main while nothing renders; the rest any.
class TalkGate {
public:
    static constexpr double fadeSeconds = 0.008;

    /// Makes the fade for a rate in Hz. What opens anew begins open or closed, without a fade.
    void begin(double sampleRate) noexcept;

    /// Heard from the next block on. Real-time: yes (lock-free).
    void setOpen(bool open) noexcept { isOpen_.store(open, std::memory_order_relaxed); }

    /// Shape: one buffer of `frames` floats per channel, in place; null pointers are skipped.
    /// Real-time: yes (lock-free).
    void process(std::int64_t frames, std::span<float* const> channels) noexcept;

private:
    static_assert(std::atomic<bool>::is_always_lock_free);

    void fade(std::int64_t frame, std::span<float* const> channels, bool isOpening) noexcept;

    std::atomic<bool> isOpen_{true}; // relaxed: it stands for itself
    std::int64_t length_ = 384;      ///< N; frames
    std::int64_t position_ = 384;    ///< n
};

} // namespace velmora
