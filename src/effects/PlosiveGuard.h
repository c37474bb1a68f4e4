// PlosiveGuard.h: softens the thump of a spoken p or b.
#pragma once

#include "effects/FXParams.h"
#include "effects/vector/Followers.h"
#include "effects/vector/Steps.h"
#include "effects/vector/StereoSection.h"

#include <array>

namespace velmora {

/// Turns down what lies below 120 Hz, by up to 12 dB, while it outruns the slow average of the
/// whole signal by more than 10 % and is above about -30 dBFS.
///
/// Threads: audio only.
class PlosiveGuard {
public:
    /// Off keeps filter and coefficients as they are.
    void retune(const FXParams& params, double sampleRate);
    void reset() noexcept;
    [[nodiscard]] bool isOn() const noexcept { return isOn_; }
    [[nodiscard]] bool isFinite() const noexcept;

    static constexpr std::size_t steps = 3;
    template <Check check, std::size_t step>
    void run(const QuadPlace& place) noexcept;

private:
    static constexpr float broadCoefficient = 0.0015F; // per frame, deliberately at any rate
    static constexpr float outrun = 1.1F;
    static constexpr float lowFloor = 0.03F;   // linear, about -30 dBFS
    static constexpr float duckedGain = 0.25F; // -12 dB

    template <Check check>
    void split(const QuadPlace& place) noexcept;
    template <Check check>
    void findBursts(const QuadPlace& place) noexcept;
    template <Check check>
    void duck(const QuadPlace& place) noexcept;

    StereoSection lowPass_;
    float lowEnvelope_{0};
    float broadEnvelope_{0};
    float gain_{1};
    float attack_{0};
    float release_{0};
    bool isOn_{false};

    // from step to step
    std::array<Quad, quadSlots> lowBand_{};
    Lanes lowLevels_{};
    Lanes levels_{};
    Lanes targets_{};
};

template <Check check, std::size_t step>
void PlosiveGuard::run(const QuadPlace& place) noexcept {
    if constexpr (step == 0) {
        split<check>(place);
    } else if constexpr (step == 1) {
        findBursts<check>(place);
    } else {
        duck<check>(place);
    }
}

template <Check check>
void PlosiveGuard::split(const QuadPlace& place) noexcept {
    const Quad x = loadQuad(place.samples);
    const Quad low = lowPass_.process<check>(x, place.frames);
    lowBand_[place.index % quadSlots] = low;
    lowLevels_ = levelsOf(low);
    levels_ = levelsOf(x);
}

template <Check check>
void PlosiveGuard::findBursts(const QuadPlace& place) noexcept {
    const Lanes lows = throughFrames(
        lowEnvelope_, lowLevels_, place.frames, [&](float envelope, float level, std::size_t) {
            return followFastUp<check>(envelope, level, attack_, release_, 0.0F);
        });
    const Lanes broads = throughFrames(
        broadEnvelope_, levels_, place.frames, [](float envelope, float level, std::size_t) {
            return follow<check>(envelope, level, broadCoefficient, 0.0F);
        });
    const LaneMask bursts = (broads * outrun < lows) & (lows > allLanes(lowFloor));
    targets_ = select(bursts, allLanes(duckedGain), allLanes(1.0F));
}

template <Check check>
void PlosiveGuard::duck(const QuadPlace& place) noexcept {
    const Lanes gains =
        throughFrames(gain_, targets_, place.frames, [&](float gain, float target, std::size_t) {
            return followFastDown<check>(gain, target, attack_, release_, 1.0F);
        });
    const Quad& low = lowBand_[place.index % quadSlots];
    storeQuad(place.samples, (loadQuad(place.samples) - low) + low * forBothChannels(gains));
}

} // namespace velmora
