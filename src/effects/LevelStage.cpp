#include "effects/LevelStage.h"

#include "effects/SampleMath.h"

#include <algorithm>

namespace velmora {
namespace {

constexpr double meanSquareSeconds = 0.4;
constexpr double slewSeconds = 1.5;
constexpr float manualGlide = 0.0005F; // per frame, deliberately at any sample rate
constexpr float quietestRms = 0.0035F; // about -49 dBFS
constexpr float wantedRms = 0.1259F;   // about -18 dBFS
constexpr float lowestGain = 0.25F;    // -12 dB
constexpr float highestGain = 8.0F;    // +18 dB

} // namespace

void LevelStage::retune(const FXParams& params, double sampleRate) {
    meanSquareCoefficient_ = followCoefficient(sampleRate, meanSquareSeconds);
    slew_ = followCoefficient(sampleRate, slewSeconds);
    isAutomatic_ = params.autoGain;
    manualGain_ = linearGain(params.manualDB);
}

void LevelStage::reset() noexcept {
    meanSquare_ = 0.0F;
    gain_ = 1.0F;
}

void LevelStage::trackLevel(float left, float right) noexcept {
    const float square = (left * left + right * right) * 0.5F;
    meanSquare_ = follow(meanSquare_, square, meanSquareCoefficient_, 0.0F);
}

void LevelStage::glideAutomatically() noexcept {
    const float rms = std::sqrt(maxFirst(meanSquare_, 0.0F));
    if (rms > quietestRms) {
        gain_ = follow(gain_, std::clamp(wantedRms / rms, lowestGain, highestGain), slew_, 1.0F);
    }
}

void LevelStage::process(std::span<float> samples) noexcept {
    for (std::size_t i = 0; i + 1 < samples.size(); i += 2) {
        trackLevel(samples[i], samples[i + 1]);
        if (isAutomatic_) {
            glideAutomatically();
        } else {
            gain_ = follow(gain_, manualGain_, manualGlide, 1.0F);
        }
        samples[i] *= gain_;
        samples[i + 1] *= gain_;
    }
}

} // namespace velmora
