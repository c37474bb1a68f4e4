// Quad.h: four frames of stereo at a time.
#pragma once

#include "effects/vector/Lanes.h"

#include <array>
#include <cstddef>

namespace velmora {

inline constexpr std::size_t quadFrames = 4;
inline constexpr std::size_t quadSamples = 2 * quadFrames;

/// Four frames in a row, two in each half: left, right, left, right.
struct Quad {
    Lanes early, late;
};

[[nodiscard]] inline Quad loadQuad(const float* samples) noexcept {
    return {loadLanes(samples), loadLanes(samples + 4)};
}

inline void storeQuad(float* samples, const Quad& quad) noexcept {
    storeLanes(samples, quad.early);
    storeLanes(samples + 4, quad.late);
}

[[nodiscard]] inline Quad operator+(const Quad& first, const Quad& second) noexcept {
    return {first.early + second.early, first.late + second.late};
}
[[nodiscard]] inline Quad operator-(const Quad& first, const Quad& second) noexcept {
    return {first.early - second.early, first.late - second.late};
}
[[nodiscard]] inline Quad operator*(const Quad& first, const Quad& second) noexcept {
    return {first.early * second.early, first.late * second.late};
}

/// One channel of the four frames.
[[nodiscard]] inline Lanes leftOf(const Quad& quad) noexcept {
    return __builtin_shufflevector(quad.early, quad.late, 0, 2, 4, 6);
}
[[nodiscard]] inline Lanes rightOf(const Quad& quad) noexcept {
    return __builtin_shufflevector(quad.early, quad.late, 1, 3, 5, 7);
}

/// One number for each of four frames, given to both channels.
[[nodiscard]] inline Quad forBothChannels(Lanes perFrame) noexcept {
    return {__builtin_shufflevector(perFrame, perFrame, 0, 0, 1, 1),
            __builtin_shufflevector(perFrame, perFrame, 2, 2, 3, 3)};
}

/// The larger magnitude of left and right, frame by frame.
[[nodiscard]] inline Lanes levelsOf(const Quad& quad) noexcept {
    const Quad magnitudes{absolute(quad.early), absolute(quad.late)};
    return maxFirst(leftOf(magnitudes), rightOf(magnitudes));
}

/// Takes `state` through the first `frames` of four targets by step(state, target, frame), and
/// gives what it was after each; 0 for the other frames.
template <typename Step>
[[nodiscard]] Lanes
throughFrames(float& state, Lanes targets, std::size_t frames, Step step) noexcept {
    std::array<float, quadFrames> states{};
    for (std::size_t i = 0; i < frames; ++i) {
        states[i] = state = step(state, targets[i], i);
    }
    return Lanes{states[0], states[1], states[2], states[3]};
}

} // namespace velmora
