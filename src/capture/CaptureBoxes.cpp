#include "capture/CaptureChain.h"

#include "effects/EffectsChain.h"
#include "engine/realtime/RingBuffer.h"

#include <algorithm>
#include <cmath>

namespace velmora {

float CaptureChain::deliver(float* samples, std::int64_t count) const noexcept {
    fx->process(samples, count);
    float peak = 0.0F;
    for (std::int64_t index = 0; index < count; ++index) {
        peak = std::max(peak, std::abs(samples[index]));
    }
    if (count > 0) {
        for (const auto& ring : rings) {
            ring->write(samples, count);
        }
    }
    return peak;
}

} // namespace velmora
