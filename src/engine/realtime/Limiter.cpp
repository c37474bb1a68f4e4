#include "engine/realtime/Limiter.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

namespace velmora {
namespace {

constexpr double releaseSeconds = 0.08;
constexpr float smallestPeak = 1e-9F; // keeps the division finite

/// Others may be reading it.
void publish(float& shared, float value) noexcept {
    static_assert(std::atomic_ref<float>::is_always_lock_free);
    std::atomic_ref(shared).store(value, std::memory_order_relaxed);
}

/// The next gain when nothing needs limiting.
float returned(float gain, float release) noexcept {
    return gain > 1.0F ? 1.0F : 1.0F + release * (gain - 1.0F);
}

/// The largest magnitude, or not a number when there is one among the samples. Magnitudes are
/// ordered like their bits, which the compiler can compare several at a time.
float peakOf(std::span<const float> samples) noexcept {
    constexpr std::int32_t allButTheSign = 0x7FFFFFFF;
    std::int32_t peak = 0;
    for (const float sample : samples) {
        peak = std::max(peak, std::bit_cast<std::int32_t>(sample) & allButTheSign);
    }
    return std::bit_cast<float>(peak);
}

} // namespace

void Limiter::setSampleRate(double sampleRate) noexcept {
    releaseCoeff = std::exp(static_cast<float>(-1.0 / (sampleRate * releaseSeconds)));
}

void Limiter::process(std::span<float> samples) noexcept {
    float g = std::isfinite(gain) ? gain : 1.0F;
    // Any other coefficient would let the gain run away; without one it returns at once.
    const float release = releaseCoeff >= 0.0F && releaseCoeff <= 1.0F ? releaseCoeff : 0.0F;
    if (returned(g, release) == g && g * peakOf(samples) <= ceiling) {
        // Nothing to limit, and the gain has come to rest: the usual case, without the recursion.
        for (float& sample : samples) {
            sample *= g;
        }
        publish(gain, g);
        return;
    }
    for (std::size_t i = 0; i + 1 < samples.size(); i += 2) {
        const float peak = std::max(std::abs(samples[i]), std::abs(samples[i + 1]));
        if (g * peak > ceiling) {
            const float target = ceiling / std::max(peak, smallestPeak);
            g = g > target ? target : target + release * (g - target);
        } else {
            g = returned(g, release);
        }
        samples[i] *= g;
        samples[i + 1] *= g;
    }
    publish(gain, g);
}

} // namespace velmora
