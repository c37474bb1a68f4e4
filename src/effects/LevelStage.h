// LevelStage.h: rides the level towards a common loudness, or applies the user's own gain.
#pragma once

#include "effects/FXParams.h"
#include "effects/vector/Followers.h"
#include "effects/vector/Steps.h"

namespace velmora {

/// Tracks the mean square and glides one gain, both channels alike. Automatic: towards an RMS of
/// about -18 dBFS, within -12 … +18 dB, held while the input is below about -49 dBFS so that
/// silence is not pumped up. Manual: towards the given gain.
///
/// Threads: audio only.
class LevelStage {
public:
    void retune(const FXParams& params, double sampleRate);
    void reset() noexcept;
    [[nodiscard]] static constexpr bool isOn() noexcept { return true; }
    [[nodiscard]] bool isFinite() const noexcept;

    static constexpr std::size_t steps = 2;
    template <Check check, std::size_t step>
    void run(const QuadPlace& place) noexcept;

private:
    static constexpr float manualGlide = 0.0005F; // per frame, deliberately at any sample rate
    static constexpr float quietestRms = 0.0035F; // about -49 dBFS
    static constexpr float wantedRms = 0.1259F;   // about -18 dBFS
    static constexpr float lowestGain = 0.25F;    // -12 dB
    static constexpr float highestGain = 8.0F;    // +18 dB

    template <Check check>
    void track(const QuadPlace& place) noexcept;
    template <Check check>
    [[nodiscard]] Lanes automaticGains(std::size_t frames) noexcept;
    template <Check check>
    [[nodiscard]] Lanes manualGains(std::size_t frames) noexcept;

    float meanSquare_{0};
    float gain_{1};
    float meanSquareCoefficient_{0};
    float slew_{0};       // of the automatic gain
    float manualGain_{1}; // linear
    bool isAutomatic_{true};

    Lanes meanSquares_{}; // from step to step
};

template <Check check, std::size_t step>
void LevelStage::run(const QuadPlace& place) noexcept {
    if constexpr (step == 0) {
        track<check>(place);
    } else {
        const Lanes gains =
            isAutomatic_ ? automaticGains<check>(place.frames) : manualGains<check>(place.frames);
        storeQuad(place.samples, loadQuad(place.samples) * forBothChannels(gains));
    }
}

template <Check check>
void LevelStage::track(const QuadPlace& place) noexcept {
    const Quad x = loadQuad(place.samples);
    const Quad squares = x * x;
    const Lanes powers = (leftOf(squares) + rightOf(squares)) * 0.5F;
    meanSquares_ = throughFrames(
        meanSquare_, powers, place.frames, [&](float meanSquare, float power, std::size_t) {
            return follow<check>(meanSquare, power, meanSquareCoefficient_, 0.0F);
        });
}

template <Check check>
Lanes LevelStage::automaticGains(std::size_t frames) noexcept {
    const Lanes rms = squareRoots(maxFirst(meanSquares_, zeroLanes));
    const Lanes wanted =
        minFirst(allLanes(highestGain), maxFirst(allLanes(lowestGain), wantedRms / rms));
    const Lanes slews = select(rms > allLanes(quietestRms), allLanes(slew_), zeroLanes); // 0 holds
    return throughFrames(gain_, wanted, frames, [&](float gain, float target, std::size_t i) {
        return follow<check>(gain, target, slews[i], 1.0F);
    });
}

template <Check check>
Lanes LevelStage::manualGains(std::size_t frames) noexcept {
    const Lanes targets = allLanes(manualGain_);
    return throughFrames(gain_, targets, frames, [](float gain, float target, std::size_t) {
        return follow<check>(gain, target, manualGlide, 1.0F);
    });
}

} // namespace velmora
