#include "effects/Compressor.h"

#include <algorithm>
#include <array>
#include <span>

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

void Compressor::retune(const FXParams& params, double sampleRate) {
    attack_ = followCoefficient(sampleRate, attackSeconds);
    release_ = followCoefficient(sampleRate, releaseSeconds);
    if (params.comp < 1) {
        slope_ = 0.0F;
        return;
    }
    const auto& chosen =
        strengths[static_cast<std::size_t>(std::min<std::int64_t>(params.comp, 3)) - 1];
    threshold_ = linearGain(chosen.thresholdDb);
    slope_ = 1.0F - 1.0F / chosen.ratio;
    makeup_ = linearGain(chosen.makeupDb);
}

void Compressor::findGains(std::size_t firstFrame, std::size_t frames) noexcept {
    const auto row = std::span(row_).subspan(firstFrame, frames);
    for (float& number : row) {
        number = number > threshold_ ? 20.0F * std::log10(number / threshold_) : 0.0F; // dB over it
    }
    for (float& number : row) {
        number = number > 0.0F ? makeup_ * linearGain(-(slope_ * number)) : makeup_;
    }
}

} // namespace velmora
