#include "engine/realtime/Limiter.h"

#include <algorithm>
#include <cmath>

namespace velmora {
namespace {

constexpr double releaseSeconds = 0.08;
constexpr float smallestPeak = 1e-9F; // keeps the division finite

} // namespace

void Limiter::setSampleRate(double sampleRate) noexcept {
    releaseCoeff = std::exp(static_cast<float>(-1.0 / (sampleRate * releaseSeconds)));
}

void Limiter::process(std::span<float> samples) noexcept {
    float g = std::isfinite(gain) ? gain : 1.0F;
    // Any other coefficient would let the gain run away; without one it returns at once.
    const float release = releaseCoeff >= 0.0F && releaseCoeff <= 1.0F ? releaseCoeff : 0.0F;
    for (std::size_t i = 0; i + 1 < samples.size(); i += 2) {
        const float peak = std::max(std::abs(samples[i]), std::abs(samples[i + 1]));
        const float target = g * peak > ceiling ? ceiling / std::max(peak, smallestPeak) : 1.0F;
        g = g > target ? target : target + release * (g - target);
        samples[i] *= g;
        samples[i + 1] *= g;
    }
    gain = g;
}

} // namespace velmora
