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
    state_ = {};
}

bool LevelStage::isFinite() const noexcept {
    return std::isfinite(state_.meanSquare) && std::isfinite(state_.gain);
}

template <Check check>
void LevelStage::glideAutomatically(State& state) const noexcept {
    const float rms = std::sqrt(maxFirst(state.meanSquare, 0.0F));
    if (rms > quietestRms) {
        const float wanted = std::clamp(wantedRms / rms, lowestGain, highestGain);
        state.gain = follow<check>(state.gain, wanted, slew_, 1.0F);
    }
}

template <Check check, bool isAutomatic>
void LevelStage::run(std::span<float> samples) noexcept {
    State state = state_;
    for (std::size_t i = 0; i + 1 < samples.size(); i += 2) {
        const float left = samples[i];
        const float right = samples[i + 1];
        const float square = (left * left + right * right) * 0.5F;
        state.meanSquare = follow<check>(state.meanSquare, square, meanSquareCoefficient_, 0.0F);
        if constexpr (isAutomatic) {
            glideAutomatically<check>(state);
        } else {
            state.gain = follow<check>(state.gain, manualGain_, manualGlide, 1.0F);
        }
        samples[i] = left * state.gain;
        samples[i + 1] = right * state.gain;
    }
    state_ = state;
}

void LevelStage::process(std::span<float> samples, Check check) noexcept {
    if (check == Check::everyFrame) {
        isAutomatic_ ? run<Check::everyFrame, true>(samples)
                     : run<Check::everyFrame, false>(samples);
    } else {
        isAutomatic_ ? run<Check::atTheEnd, true>(samples) : run<Check::atTheEnd, false>(samples);
    }
}

} // namespace velmora
