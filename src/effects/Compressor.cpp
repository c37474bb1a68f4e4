#include "effects/Compressor.h"

#include "effects/SampleMath.h"

#include <algorithm>
#include <array>

namespace velmora {
namespace {

constexpr double attackSeconds = 0.005;
constexpr double releaseSeconds = 0.15;

struct Strength {
    float thresholdDb;
    float ratio;
    float makeupDb;
};
constexpr std::array<Strength, 3> strengths{
    {{-18.0F, 2.0F, 3.0F}, {-24.0F, 3.0F, 6.0F}, {-30.0F, 4.0F, 9.0F}}};

} // namespace

void Compressor::retune(std::int64_t strength, double sampleRate) {
    attack_ = followCoefficient(sampleRate, attackSeconds);
    release_ = followCoefficient(sampleRate, releaseSeconds);
    if (strength < 1) {
        slope_ = 0.0F;
        return;
    }
    const auto& chosen =
        strengths[static_cast<std::size_t>(std::min<std::int64_t>(strength, 3)) - 1];
    threshold_ = linearGain(chosen.thresholdDb);
    slope_ = 1.0F - 1.0F / chosen.ratio;
    makeup_ = linearGain(chosen.makeupDb);
}

float Compressor::gain() const noexcept {
    if (!(envelope_ > threshold_)) {
        return makeup_;
    }
    const float overDb = 20.0F * std::log10(envelope_ / threshold_);
    return makeup_ * linearGain(-(slope_ * overDb));
}

void Compressor::process(std::span<float> samples) noexcept {
    for (std::size_t i = 0; i + 1 < samples.size(); i += 2) {
        const float peak = maxFirst(std::abs(samples[i]), std::abs(samples[i + 1]));
        envelope_ = follow(envelope_, peak, peak > envelope_ ? attack_ : release_, 0.0F);
        const float now = gain();
        samples[i] *= now;
        samples[i + 1] *= now;
    }
}

} // namespace velmora
