#include "effects/LowCut.h"

namespace velmora {

void LowCut::retune(std::int64_t step, double sampleRate) {
    isOn_ = step >= 1;
    if (isOn_) {
        highPass_.retune(0, Biquad::highPass(step == 1 ? 75.0 : 150.0, sampleRate));
    }
}

template <Check check>
void LowCut::run(std::span<float> samples) noexcept {
    BiquadLanes highPass = highPass_;
    for (std::size_t i = 0; i + 1 < samples.size(); i += 2) {
        storeFrame(&samples[i], highPass.process<check>(loadFrame(&samples[i])));
    }
    highPass_ = highPass;
}

void LowCut::process(std::span<float> samples, Check check) noexcept {
    check == Check::everyFrame ? run<Check::everyFrame>(samples) : run<Check::atTheEnd>(samples);
}

} // namespace velmora
