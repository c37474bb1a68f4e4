#include "effects/PlosiveGuard.h"

#include <cmath>

namespace velmora {
namespace {

constexpr double cornerHz = 120.0;
constexpr double attackSeconds = 0.002;
constexpr double releaseSeconds = 0.12;
constexpr float broadCoefficient = 0.0015F; // per frame, deliberately at any sample rate
constexpr float outrun = 1.1F;
constexpr float lowFloor = 0.03F;   // linear, about -30 dBFS
constexpr float duckedGain = 0.25F; // -12 dB

} // namespace

void PlosiveGuard::retune(bool isOn, double sampleRate) {
    isOn_ = isOn;
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

void PlosiveGuard::process(std::span<float> samples) noexcept {
    for (std::size_t i = 0; i + 1 < samples.size(); i += 2) {
        float& left = samples[i];
        float& right = samples[i + 1];
        const float lowLeft = lowPass_.left.process(left);
        const float lowRight = lowPass_.right.process(right);
        const float low = maxFirst(std::abs(lowLeft), std::abs(lowRight));
        const float broad = maxFirst(std::abs(left), std::abs(right));
        lowEnvelope_ = follow(lowEnvelope_, low, low > lowEnvelope_ ? attack_ : release_, 0.0F);
        broadEnvelope_ = follow(broadEnvelope_, broad, broadCoefficient, 0.0F);
        const bool bursts = broadEnvelope_ * outrun < lowEnvelope_ && lowEnvelope_ > lowFloor;
        const float target = bursts ? duckedGain : 1.0F;
        gain_ = follow(gain_, target, target < gain_ ? attack_ : release_, 1.0F);
        left = (left - lowLeft) + lowLeft * gain_;
        right = (right - lowRight) + lowRight * gain_;
    }
}

} // namespace velmora
