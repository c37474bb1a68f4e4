// Signals.h: what the effects' tests listen to.
#pragma once

#include "effects/FXParams.h"

#include "support/NotNumbers.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <random>
#include <span>
#include <vector>

namespace velmora {

inline constexpr double usualRate = 48000.0; // Hz

/// Interleaved stereo, both channels alike.
inline std::vector<float> constant(std::size_t frames, float value) {
    return std::vector<float>(2 * frames, value);
}

inline std::vector<float>
sine(std::size_t frames, double hz, double amplitude, double sampleRate = 48000.0) {
    std::vector<float> samples(2 * frames);
    for (std::size_t i = 0; i < frames; ++i) {
        const double phase = 2.0 * std::numbers::pi * hz * static_cast<double>(i) / sampleRate;
        samples[2 * i] = samples[2 * i + 1] = static_cast<float>(amplitude * std::sin(phase));
    }
    return samples;
}

/// Left and right differ.
inline std::vector<float> noise(std::mt19937& random, std::size_t frames, float amplitude) {
    std::uniform_real_distribution<float> uniform(-amplitude, amplitude);
    std::vector<float> samples(2 * frames);
    std::ranges::generate(samples, [&] { return uniform(random); });
    return samples;
}

/// Any 32 bits at all: huge, denormal, infinite, not a number.
inline std::vector<float> arbitraryBits(std::mt19937& random, std::size_t frames) {
    std::vector<float> samples(2 * frames);
    std::ranges::generate(
        samples, [&] { return std::bit_cast<float>(static_cast<std::uint32_t>(random())); });
    return samples;
}

inline double rms(std::span<const float> samples) {
    double sum = 0.0;
    for (const float sample : samples) {
        sum += static_cast<double>(sample) * static_cast<double>(sample);
    }
    return std::sqrt(sum / static_cast<double>(samples.size()));
}

/// Over the second half, when a filter has settled.
inline double settledRms(const std::vector<float>& samples) {
    return rms(std::span(samples).subspan(samples.size() / 2));
}

inline bool allFinite(std::span<const float> samples) {
    return std::ranges::all_of(samples, [](float sample) { return std::isfinite(sample); });
}

/// Also tells +0 from -0, and takes equal not-a-numbers as equal.
inline std::vector<std::uint32_t> bitsOf(std::span<const float> samples) {
    std::vector<std::uint32_t> bits(samples.size());
    std::ranges::transform(
        samples, bits.begin(), [](float sample) { return std::bit_cast<std::uint32_t>(sample); });
    return bits;
}

inline constexpr FXParams everyEffect{.lowcut = 1,
                                      .tilt = 0.5F,
                                      .comp = 2,
                                      .autoGain = true,
                                      .manualDB = 0.0F,
                                      .reverbChar = 2,
                                      .reverbMix = 0.35F,
                                      .plosive = true,
                                      .denoise = true};

} // namespace velmora
