#include "effects/vector/BiquadLanes.h"

#include <initializer_list>

namespace velmora {

void BiquadLanes::retune(int pair, const Biquad& design) noexcept {
    for (const int lane : {2 * pair, 2 * pair + 1}) {
        b0_[lane] = design.b0;
        b1_[lane] = design.b1;
        b2_[lane] = design.b2;
        a1_[lane] = design.a1;
        a2_[lane] = design.a2;
    }
}

void BiquadLanes::clearHistory() noexcept {
    x1_ = x2_ = y1_ = y2_ = zeroLanes;
}

} // namespace velmora
