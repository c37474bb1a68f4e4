#include "effects/Tilt.h"

#include <cmath>

namespace velmora {
namespace {

constexpr float leastTilt = 0.01F;
constexpr double gainDbAtFullTilt = 4.5;
constexpr double lowHz = 250.0;
constexpr double highHz = 3500.0;

} // namespace

void Tilt::retune(float tilt, double sampleRate) {
    isOn_ = std::abs(tilt) > leastTilt;
    if (isOn_) {
        const double gainDb = static_cast<double>(tilt) * gainDbAtFullTilt;
        lowShelf_.retune(Biquad::lowShelf(lowHz, -gainDb, sampleRate));
        highShelf_.retune(Biquad::highShelf(highHz, gainDb, sampleRate));
    }
}

void Tilt::reset() noexcept {
    lowShelf_.clearHistory();
    highShelf_.clearHistory();
}

void Tilt::process(std::span<float> samples) noexcept {
    for (std::size_t i = 0; i + 1 < samples.size(); i += 2) {
        samples[i] = highShelf_.left.process(lowShelf_.left.process(samples[i]));
        samples[i + 1] = highShelf_.right.process(lowShelf_.right.process(samples[i + 1]));
    }
}

} // namespace velmora
