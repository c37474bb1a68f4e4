#include "effects/NoiseReduction.h"

#include "effects/SampleMath.h"

namespace velmora {
namespace {

constexpr double lowHz = 400.0;
constexpr double highHz = 3000.0;
constexpr double attackSeconds = 0.004;
constexpr double releaseSeconds = 0.12;
constexpr double floorRiseSeconds = 4.0;

} // namespace

void NoiseReduction::retune(const FXParams& params, double sampleRate) {
    isOn_ = params.denoise;
    if (isOn_) {
        split_.retune(0, Biquad::lowPass(lowHz, sampleRate));
        split_.retune(1, Biquad::highPass(highHz, sampleRate));
        attack_ = allLanes(followCoefficient(sampleRate, attackSeconds));
        release_ = allLanes(followCoefficient(sampleRate, releaseSeconds));
        floorRise_ = allLanes(followCoefficient(sampleRate, floorRiseSeconds));
    }
}

void NoiseReduction::reset() noexcept {
    split_.clearHistory();
    envelope_ = zeroLanes;
    floor_ = allLanes(initialFloor);
    gain_ = allLanes(1.0F);
}

bool NoiseReduction::isFinite() const noexcept {
    return split_.isFinite() && allFinite(envelope_) && allFinite(floor_) && allFinite(gain_);
}

} // namespace velmora
