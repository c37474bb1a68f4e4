// Lanes.h: four floats at a time.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#if defined(__SSE__)
#include <immintrin.h>
#endif

namespace velmora {

/// Every operation works lane by lane and rounds as it does on one float.
using Lanes [[gnu::vector_size(16)]] = float;
using LaneMask [[gnu::vector_size(16)]] = std::int32_t; ///< -1 = yes, 0 = no

inline constexpr Lanes zeroLanes{};

[[nodiscard]] inline Lanes allLanes(float value) noexcept {
    return Lanes{value, value, value, value};
}

/// Four floats in a row, from any address.
[[nodiscard]] inline Lanes loadLanes(const float* from) noexcept {
    Lanes lanes;
    std::memcpy(&lanes, from, sizeof lanes);
    return lanes;
}

inline void storeLanes(float* to, Lanes lanes) noexcept {
    std::memcpy(to, &lanes, sizeof lanes);
}

/// One stereo frame in the two lower lanes, 0 in the others.
[[nodiscard]] inline Lanes loadFrame(const float* frame) noexcept {
    // By way of a double, for one load instruction instead of a detour through memory.
    using Halves [[gnu::vector_size(16)]] = double;
    double both = 0.0;
    std::memcpy(&both, frame, sizeof both);
    return std::bit_cast<Lanes>(Halves{both, 0.0});
}

inline void storeFrame(float* frame, Lanes lanes) noexcept {
    std::memcpy(frame, &lanes, 2 * sizeof(float));
}

/// Two lanes of the first operand, then two of the second.
[[nodiscard]] inline Lanes lowerOfBoth(Lanes first, Lanes second) noexcept {
    return __builtin_shufflevector(first, second, 0, 1, 4, 5);
}
[[nodiscard]] inline Lanes upperTwice(Lanes lanes) noexcept {
    return __builtin_shufflevector(lanes, lanes, 2, 3, 2, 3);
}

[[nodiscard]] inline Lanes select(LaneMask mask, Lanes yes, Lanes no) noexcept {
    return mask ? yes : no;
}

[[nodiscard]] inline Lanes absolute(Lanes lanes) noexcept {
    constexpr std::int32_t allButTheSign = 0x7FFFFFFF;
    return std::bit_cast<Lanes>(std::bit_cast<LaneMask>(lanes) & allButTheSign);
}

/// As for one float: the first when either is not a number.
[[nodiscard]] inline Lanes maxFirst(Lanes first, Lanes second) noexcept {
#if defined(__SSE__)
    return _mm_max_ps(second, first); // its second operand is the one that it falls back to
#else
    return select(second > first, second, first);
#endif
}

/// The smaller, and the first when either is not a number.
[[nodiscard]] inline Lanes minFirst(Lanes first, Lanes second) noexcept {
#if defined(__SSE__)
    return _mm_min_ps(second, first);
#else
    return select(second < first, second, first);
#endif
}

[[nodiscard]] inline Lanes squareRoots(Lanes lanes) noexcept {
#if defined(__SSE__)
    return _mm_sqrt_ps(lanes);
#else
    return {std::sqrt(lanes[0]), std::sqrt(lanes[1]), std::sqrt(lanes[2]), std::sqrt(lanes[3])};
#endif
}

[[nodiscard]] inline LaneMask areFinite(Lanes lanes) noexcept {
    return absolute(lanes) <= allLanes(std::numeric_limits<float>::max());
}

[[nodiscard]] inline bool allFinite(Lanes lanes) noexcept {
    using Halves [[gnu::vector_size(16)]] = std::int64_t;
    const auto finite = std::bit_cast<Halves>(areFinite(lanes));
    return (finite[0] & finite[1]) == -1;
}

[[nodiscard]] inline Lanes finiteOr(Lanes lanes, Lanes reset) noexcept {
    return select(areFinite(lanes), lanes, reset);
}

} // namespace velmora
