#include "effects/LowCut.h"

namespace velmora {

void LowCut::retune(std::int64_t step, double sampleRate) {
    isOn_ = step >= 1;
    if (isOn_) {
        highPass_.retune(Biquad::highPass(step == 1 ? 75.0 : 150.0, sampleRate));
    }
}

void LowCut::process(std::span<float> samples) noexcept {
    for (std::size_t i = 0; i + 1 < samples.size(); i += 2) {
        samples[i] = highPass_.left.process(samples[i]);
        samples[i + 1] = highPass_.right.process(samples[i + 1]);
    }
}

} // namespace velmora
