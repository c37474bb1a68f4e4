// SampleMath.h: the few sums that every stage shares.
#pragma once

#include <cmath>
#include <limits>

namespace velmora {

/// The larger of two numbers, and the first when either is not a number.
[[nodiscard]] constexpr float maxFirst(float first, float second) noexcept {
    return second > first ? second : first;
}

/// The smaller, and the first when either is not a number.
[[nodiscard]] constexpr float minFirst(float first, float second) noexcept {
    return second < first ? second : first;
}

/// `value`, or `reset` when it is infinite or not a number, so that no state stays poisoned.
[[nodiscard]] inline float finiteOr(float value, float reset) noexcept {
    return std::abs(value) <= std::numeric_limits<float>::max() ? value : reset;
}

/// The coefficient with which a follower covers 63 % of a step in `seconds`.
///
/// Formula: a = 1 - exp(-1 / (fs * T)); the product in double, the exponential in float.
/// Real-time: yes (one exp).
[[nodiscard]] inline float followCoefficient(double sampleRate, double seconds) noexcept {
    return 1.0F - std::exp(static_cast<float>(-1.0 / (sampleRate * seconds)));
}

/// The linear gain of a level in dB, wholly in float.
///
/// Real-time: yes (one exp10).
[[nodiscard]] inline float linearGain(float gainDb) noexcept {
    // The C library's own power of ten: pow(10, x) rounds differently.
    return ::exp10f(gainDb / 20.0F);
}

} // namespace velmora
