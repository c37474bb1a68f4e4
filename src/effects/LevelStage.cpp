#include "effects/LevelStage.h"

namespace velmora {
namespace {

constexpr double meanSquareSeconds = 0.4;
constexpr double slewSeconds = 1.5;

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

bool LevelStage::isFinite() const noexcept {
    return std::isfinite(meanSquare_) && std::isfinite(gain_);
}

} // namespace velmora
