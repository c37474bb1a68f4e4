// Compressor.h: evens out loudness in three fixed strengths.
#pragma once

#include "effects/Lanes.h"

#include <cmath>
#include <cstdint>
#include <span>

namespace velmora {

/// A peak compressor, both channels under one gain. Its make-up gain applies at every level.
///
/// Formula: g = makeup · 10^(-slope · 20·log10(env / threshold) / 20) above the threshold.
/// Threads: audio only.
class Compressor {
public:
    /// @param strength  0 and below = off, 1 = -18 dB 2:1, 2 = -24 dB 3:1, 3 and above = -30 dB 4:1
    void retune(std::int64_t strength, double sampleRate);
    void reset() noexcept { envelope_ = 0.0F; }
    [[nodiscard]] bool isOn() const noexcept { return slope_ > 0.0F; }
    /// Shape: interleaved stereo, in place. Real-time: yes.
    void process(std::span<float> samples, Check check = Check::everyFrame) noexcept;
    [[nodiscard]] bool isFinite() const noexcept { return std::isfinite(envelope_); }

private:
    template <Check check>
    void run(std::span<float> samples) noexcept;
    [[nodiscard]] float gainAt(float envelope) const noexcept;

    float envelope_{0};
    Lanes attack_{};
    Lanes release_{};
    float threshold_{0}; // linear
    float slope_{0};     // 1 - 1/ratio; 0 = off
    float makeup_{1};    // linear
};

} // namespace velmora
