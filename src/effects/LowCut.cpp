#include "effects/LowCut.h"

namespace velmora {

void LowCut::retune(const FXParams& params, double sampleRate) {
    isOn_ = params.lowcut >= 1;
    if (isOn_) {
        highPass_.retune(Biquad::highPass(params.lowcut == 1 ? 75.0 : 150.0, sampleRate));
    }
}

} // namespace velmora
