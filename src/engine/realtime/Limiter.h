// Limiter.h: keeps one output's peaks below full scale.
#pragma once

#include <atomic>
#include <span>

namespace velmora {

/// A peak limiter without look-ahead: it reduces at once and returns exponentially. There is no
/// hard clip, so that a sample may pass the ceiling by a few hundredths of a dB.
///
/// Formula: p = max(|L|, |R|); t = g·p > ceiling ? ceiling / p : 1;
///          g = g > t ? t : t + k·(g - t).
///          Deliberate: the test asks whether the gain in force is enough for this frame. While it
///          is, the gain returns, even when the raw peak is above the ceiling.
/// Threads: the render thread of its output; control only while that output does not run, but for
///          what says otherwise.
struct Limiter {
    float ceiling{0.8912509F};       ///< linear, -1 dBFS
    float releaseCoeff{0.99973965F}; ///< per frame; 80 ms at 48 kHz
    float gain{1.0F};                ///< in force; carried from block to block

    /// The gain as it was after the last block. Threads: any. Real-time: yes (lock-free).
    [[nodiscard]] float latestGain() noexcept {
        return std::atomic_ref(gain).load(std::memory_order_relaxed);
    }

    /// Sets the release to 80 ms at a rate in Hz. Real-time: yes (one exp).
    void setSampleRate(double sampleRate) noexcept;

    /// Shape: interleaved stereo, in place. A gain that is not finite returns to 1.
    /// Real-time: yes.
    void process(std::span<float> samples) noexcept;
};

} // namespace velmora
