#include "effects/Reverb.h"

#include <algorithm>
#include <array>
#include <utility>

namespace velmora {
namespace {

constexpr double reservedRate = 192000.0; // Hz
constexpr float leastMix = 0.005F;
constexpr float wetAtFullMix = 0.6F;

struct Character {
    float feedback;
    float damp;
};
constexpr std::array<Character, 3> characters{{
    {0.75F, 0.45F}, // Studio
    {0.84F, 0.25F}, // Plate
    {0.92F, 0.5F},  // Hall
}};

} // namespace

Reverb::Reverb() : spare_(reservedRate) {
    lines_.reserve(reservedRate);
}

void Reverb::retune(const FXParams& params, double sampleRate, bool rateChanged) {
    isOn_ = params.reverbMix > leastMix;
    if (!isOn_) {
        return;
    }
    const auto index = std::clamp<std::int64_t>(params.reverbChar, 0, characters.size() - 1);
    const Character& character = characters[static_cast<std::size_t>(index)];
    feedback_ = character.feedback;
    damp_ = character.damp;
    wet_ = std::min(params.reverbMix, 1.0F) * wetAtFullMix;
    if (!isConfigured_ || rateChanged) {
        if (ReverbLines* larger = spare_.take()) {
            std::swap(lines_, *larger);
        }
        lines_.configure(sampleRate);
        isConfigured_ = true;
    }
}

void Reverb::reset() {
    if (isConfigured_) {
        lines_.clear();
    }
}

void Reverb::process(std::span<float> samples) noexcept {
    for (std::size_t i = 0; i + 1 < samples.size(); i += 2) {
        samples[i] += lines_.left.process(samples[i], feedback_, damp_) * wet_;
        samples[i + 1] += lines_.right.process(samples[i + 1], feedback_, damp_) * wet_;
    }
}

} // namespace velmora
