// BiquadPair.h: one filter on both channels.
#pragma once

#include "effects/Biquad.h"

namespace velmora {

/// The same coefficients twice, a history per channel.
struct BiquadPair {
    Biquad left, right;

    void retune(const Biquad& design) noexcept {
        left.retune(design);
        right.retune(design);
    }
    void clearHistory() noexcept {
        left.clearHistory();
        right.clearHistory();
    }
};

} // namespace velmora
