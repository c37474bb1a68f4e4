#include "effects/NoiseReduction.h"

#include <cmath>

namespace velmora {
namespace {

constexpr double lowHz = 400.0;
constexpr double highHz = 3000.0;
constexpr double attackSeconds = 0.004;
constexpr double releaseSeconds = 0.12;
constexpr double floorRiseSeconds = 4.0;
constexpr float lowestFloor = 0.00001F;
constexpr float openingRatio = 2.5F; // about 8 dB above the floor
constexpr float lowestReference = 0.0001F;
constexpr float lowestGain = 0.12F; // about -18.4 dB

} // namespace

void NoiseReduction::retune(bool isOn, double sampleRate) {
    isOn_ = isOn;
    if (isOn_) {
        lowPass_.retune(Biquad::lowPass(lowHz, sampleRate));
        highPass_.retune(Biquad::highPass(highHz, sampleRate));
        attack_ = followCoefficient(sampleRate, attackSeconds);
        release_ = followCoefficient(sampleRate, releaseSeconds);
        floorRise_ = followCoefficient(sampleRate, floorRiseSeconds);
    }
}

void NoiseReduction::reset() noexcept {
    lowPass_.clearHistory();
    highPass_.clearHistory();
    bands_.fill({});
}

void NoiseReduction::follow(Band& band, float level) noexcept {
    band.envelope =
        velmora::follow(band.envelope, level, level > band.envelope ? attack_ : release_, 0.0F);
    band.floor = band.floor <= band.envelope
                     ? velmora::follow(band.floor, band.envelope, floorRise_, initialFloor)
                     : maxFirst(band.envelope, lowestFloor);
    const float ratio = band.envelope / maxFirst(lowestReference, band.floor * openingRatio);
    const float target = ratio >= 1.0F ? 1.0F : maxFirst(ratio * ratio, lowestGain);
    band.gain = velmora::follow(band.gain, target, band.gain < target ? attack_ : release_, 1.0F);
}

void NoiseReduction::process(std::span<float> samples) noexcept {
    for (std::size_t i = 0; i + 1 < samples.size(); i += 2) {
        float& left = samples[i];
        float& right = samples[i + 1];
        const float lowLeft = lowPass_.left.process(left);
        const float lowRight = lowPass_.right.process(right);
        const float highLeft = highPass_.left.process(left);
        const float highRight = highPass_.right.process(right);
        const float midLeft = left - lowLeft - highLeft;
        const float midRight = right - lowRight - highRight;
        follow(bands_[0], maxFirst(std::abs(lowLeft), std::abs(lowRight)));
        follow(bands_[1], maxFirst(std::abs(midLeft), std::abs(midRight)));
        follow(bands_[2], maxFirst(std::abs(highLeft), std::abs(highRight)));
        left = lowLeft * bands_[0].gain + midLeft * bands_[1].gain + highLeft * bands_[2].gain;
        right = lowRight * bands_[0].gain + midRight * bands_[1].gain + highRight * bands_[2].gain;
    }
}

} // namespace velmora
