#include "effects/LowCut.h"

namespace velmora {

void LowCut::retune(std::int64_t step, double sampleRate) {
    isOn_ = step >= 1;
    if (isOn_) {
        highPass_.retune(Biquad::highPass(step == 1 ? 75.0 : 150.0, sampleRate));
    }
}

void LowCut::process(std::span<float> samples) noexcept {
    processEveryFrame(*this, samples);
}

} // namespace velmora
