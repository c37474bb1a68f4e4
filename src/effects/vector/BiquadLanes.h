// BiquadLanes.h: four second-order sections side by side.
#pragma once

#include "effects/Biquad.h"
#include "effects/vector/Check.h"
#include "effects/vector/Lanes.h"

namespace velmora {

/// Four sections, as two stereo pairs; each behaves as one `Biquad` does.
///
/// Threads: one owner; no internal locking.
class BiquadLanes {
public:
    /// Gives both channels of a pair (0 = lower two lanes, 1 = upper two) their coefficients and
    /// keeps the histories, so that a retune does not click.
    void retune(int pair, const Biquad& design) noexcept;
    void clearHistory() noexcept;
    /// Says whether the feedback is; the input history may still hold a bad sample.
    [[nodiscard]] bool isFinite() const noexcept { return allFinite(y1_); }

    /// One sample through each section. Real-time: yes.
    template <Check check>
    Lanes process(Lanes x) noexcept;

private:
    Lanes b0_{1, 1, 1, 1}, b1_{}, b2_{}, a1_{}, a2_{};
    Lanes x1_{}, x2_{}, y1_{}, y2_{};
};

template <Check check>
Lanes BiquadLanes::process(Lanes x) noexcept {
    Lanes y = b0_ * x + b1_ * x1_ + b2_ * x2_ - a1_ * y1_ - a2_ * y2_;
    if constexpr (check == Check::everyFrame) {
        y = finiteOr(y, zeroLanes);
    }
    x2_ = x1_;
    x1_ = x;
    y2_ = y1_;
    y1_ = y;
    return y;
}

} // namespace velmora
