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
    attack_ = allLanes(followCoefficient(sampleRate, attackSeconds));
    release_ = allLanes(followCoefficient(sampleRate, releaseSeconds));
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

float Compressor::gainAt(float envelope) const noexcept {
    if (!(envelope > threshold_)) {
        return makeup_;
    }
    const float overDb = 20.0F * std::log10(envelope / threshold_);
    return makeup_ * linearGain(-(slope_ * overDb));
}

template <Check check>
void Compressor::run(std::span<float> samples) noexcept {
    Lanes envelope = allLanes(envelope_);
    for (std::size_t i = 0; i + 1 < samples.size(); i += 2) {
        const Lanes x = loadFrame(&samples[i]);
        const Lanes levels = absolute(x);
        const Lanes peak = maxFirst(levels, __builtin_shufflevector(levels, levels, 1, 1, 1, 1));
        const Lanes speed = select(peak > envelope, attack_, release_);
        envelope = follow<check>(envelope, peak, speed, zeroLanes);
        storeFrame(&samples[i], x * gainAt(envelope[0]));
    }
    envelope_ = envelope[0];
}

void Compressor::process(std::span<float> samples, Check check) noexcept {
    check == Check::everyFrame ? run<Check::everyFrame>(samples) : run<Check::atTheEnd>(samples);
}

} // namespace velmora
