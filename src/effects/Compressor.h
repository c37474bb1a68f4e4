// Compressor.h: evens out loudness in three fixed strengths.
#pragma once

#include "effects/FXParams.h"
#include "effects/vector/Followers.h"
#include "effects/vector/Steps.h"

#include <array>
#include <cmath>

namespace velmora {

/// A peak compressor, both channels under one gain. Its make-up gain applies at every level.
///
/// Formula: g = makeup · 10^(-slope · 20·log10(env / threshold) / 20) above the threshold.
/// Threads: audio only.
class Compressor {
public:
    /// Strengths: 1 = -18 dB 2:1, 2 = -24 dB 3:1, 3 and above = -30 dB 4:1.
    void retune(const FXParams& params, double sampleRate);
    void reset() noexcept { envelope_ = 0.0F; }
    [[nodiscard]] bool isOn() const noexcept { return slope_ > 0.0F; }
    [[nodiscard]] bool isFinite() const noexcept { return std::isfinite(envelope_); }

    /// The middle step calls the C library, which goes best without anything else between.
    static constexpr std::size_t steps = 3;
    static constexpr std::size_t blockStep = 1;
    template <Check check, std::size_t step>
    void run(const QuadPlace& place) noexcept;
    void runBlock(std::size_t frames) noexcept { findGains(0, frames); }

private:
    void findGains(std::size_t firstFrame, std::size_t frames) noexcept;

    float envelope_{0};
    float attack_{0};
    float release_{0};
    float threshold_{0}; // linear
    float slope_{0};     // 1 - 1/ratio; 0 = off
    float makeup_{1};    // linear

    std::array<float, blockFrames> row_{}; // from step to step: the envelope, then the gains
};

template <Check check, std::size_t step>
void Compressor::run(const QuadPlace& place) noexcept {
    float* const row = &row_[place.index * quadFrames];
    if constexpr (step == 0) {
        const Lanes levels = levelsOf(loadQuad(place.samples));
        storeLanes(
            row,
            throughFrames(
                envelope_, levels, place.frames, [&](float envelope, float level, std::size_t) {
                    return followFastUp<check>(envelope, level, attack_, release_, 0.0F);
                }));
    } else if constexpr (step == 1) {
        findGains(place.index * quadFrames, quadFrames);
    } else {
        storeQuad(place.samples, loadQuad(place.samples) * forBothChannels(loadLanes(row)));
    }
}

} // namespace velmora
