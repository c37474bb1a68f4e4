#include "effects/Tilt.h"

#include <cmath>

namespace velmora {
namespace {

constexpr float leastTilt = 0.01F;
constexpr double gainDbAtFullTilt = 4.5;
constexpr double lowHz = 250.0;
constexpr double highHz = 3500.0;

} // namespace

void Tilt::retune(const FXParams& params, double sampleRate) {
    isOn_ = std::abs(params.tilt) > leastTilt;
    if (isOn_) {
        const double gainDb = static_cast<double>(params.tilt) * gainDbAtFullTilt;
        lowShelf_.retune(Biquad::lowShelf(lowHz, -gainDb, sampleRate));
        highShelf_.retune(Biquad::highShelf(highHz, gainDb, sampleRate));
    }
}

void Tilt::reset() noexcept {
    lowShelf_.clearHistory();
    highShelf_.clearHistory();
}

} // namespace velmora
