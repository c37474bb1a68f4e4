#include "effects/PlosiveGuard.h"

namespace velmora {
namespace {

constexpr double cornerHz = 120.0;
constexpr double attackSeconds = 0.002;
constexpr double releaseSeconds = 0.12;

} // namespace

void PlosiveGuard::retune(const FXParams& params, double sampleRate) {
    isOn_ = params.plosive;
    if (isOn_) {
        lowPass_.retune(Biquad::lowPass(cornerHz, sampleRate));
        attack_ = followCoefficient(sampleRate, attackSeconds);
        release_ = followCoefficient(sampleRate, releaseSeconds);
    }
}

void PlosiveGuard::reset() noexcept {
    lowPass_.clearHistory();
    lowEnvelope_ = broadEnvelope_ = 0.0F;
    gain_ = 1.0F;
}

bool PlosiveGuard::isFinite() const noexcept {
    return lowPass_.isFinite() && std::isfinite(lowEnvelope_) && std::isfinite(broadEnvelope_) &&
           std::isfinite(gain_);
}

} // namespace velmora
