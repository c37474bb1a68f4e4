// Speech.h: the sound that the effects are timed with.
#pragma once

#include "effects/Signals.h"

#include <cmath>
#include <random>
#include <vector>

namespace velmora {

/// Stereo at 48 kHz, like speech: syllables of tone and hiss, and pauses with a little noise.
inline std::vector<float> speech(std::size_t frames) {
    std::mt19937 random(1);
    auto samples = noise(random, frames, 0.02F);
    const auto voice = sine(frames, 180.0, 0.3);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double syllables = std::sin(static_cast<double>(i) * 1e-4);
        samples[i] += syllables > 0.0 ? static_cast<float>(syllables) * voice[i] : 0.0F;
    }
    return samples;
}

} // namespace velmora
