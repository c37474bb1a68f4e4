// StereoSection.h: one second-order section for both channels.
#pragma once

#include "effects/Biquad.h"
#include "effects/vector/Check.h"
#include "effects/vector/Quad.h"

namespace velmora {

/// Behaves as two `Biquad`s do. What does not feed back is summed for two frames at once, so that
/// only the feedback goes frame by frame.
///
/// Threads: one owner; no internal locking.
class StereoSection {
public:
    /// Keeps the histories, so that a retune does not click.
    void retune(const Biquad& design) noexcept;
    void clearHistory() noexcept;
    /// Says whether the feedback is; the input history may still hold a bad sample.
    [[nodiscard]] bool isFinite() const noexcept { return allFinite(y1_); }

    /// Takes the first `frames` of four, at least one, through the section. Real-time: yes.
    template <Check check>
    Quad process(const Quad& x, std::size_t frames) noexcept;

private:
    [[nodiscard]] Lanes feedForward(Lanes x, Lanes before) const noexcept {
        return b0_ * x + b1_ * __builtin_shufflevector(before, x, 2, 3, 4, 5) + b2_ * before;
    }
    template <Check check>
    Lanes feedBack(Lanes forward) noexcept;
    void keepInput(const Quad& x, std::size_t frames) noexcept;

    Lanes b0_{1, 1, 1, 1}, b1_{}, b2_{}, a1_{}, a2_{};
    Lanes x_{};         // the last two frames
    Lanes y1_{}, y2_{}; // in the two lower lanes
};

/// One frame, in the two lower lanes.
template <Check check>
Lanes StereoSection::feedBack(Lanes forward) noexcept {
    Lanes y = forward - a1_ * y1_ - a2_ * y2_;
    if constexpr (check == Check::everyFrame) {
        y = finiteOr(y, zeroLanes);
    }
    y2_ = y1_;
    y1_ = y;
    return y;
}

inline void StereoSection::keepInput(const Quad& x, std::size_t frames) noexcept {
    if (frames == quadFrames) {
        x_ = x.late;
        return;
    }
    std::array<float, 4 + quadSamples> inputs;
    storeLanes(inputs.data(), x_);
    storeQuad(&inputs[4], x);
    x_ = loadLanes(&inputs[2 * frames]);
}

template <Check check>
Quad StereoSection::process(const Quad& x, std::size_t frames) noexcept {
    const Quad forward{feedForward(x.early, x_), feedForward(x.late, x.early)};
    keepInput(x, frames);
    const auto next = [&](std::size_t frame, Lanes sum) {
        return frame < frames ? feedBack<check>(sum) : zeroLanes;
    };
    const Lanes first = next(0, forward.early);
    const Lanes second = next(1, upperTwice(forward.early));
    const Lanes third = next(2, forward.late);
    const Lanes fourth = next(3, upperTwice(forward.late));
    return {lowerOfBoth(first, second), lowerOfBoth(third, fourth)};
}

} // namespace velmora
