#include "effects/vector/StereoSection.h"

namespace velmora {

void StereoSection::retune(const Biquad& design) noexcept {
    b0_ = allLanes(design.b0);
    b1_ = allLanes(design.b1);
    b2_ = allLanes(design.b2);
    a1_ = allLanes(design.a1);
    a2_ = allLanes(design.a2);
}

void StereoSection::clearHistory() noexcept {
    x_ = y1_ = y2_ = zeroLanes;
}

} // namespace velmora
