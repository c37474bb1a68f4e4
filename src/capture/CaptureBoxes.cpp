#include "capture/CaptureBoxes.h"

#include "effects/EffectsChain.h"
#include "engine/realtime/LevelMeter.h"
#include "engine/realtime/ParamBox.h"
#include "engine/realtime/RingBuffer.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace velmora {

void CaptureBoxes::deliver(std::span<float> samples, float factor) const noexcept {
    const float scale = factor * gain->get();
    for (float& sample : samples) {
        sample *= scale;
    }
    const auto count = static_cast<std::int64_t>(samples.size());
    fx->process(samples.data(), count);
    float peak = 0.0F;
    for (const float sample : samples) {
        peak = std::max(peak, std::abs(sample)); // one that is not a number counts as 0
    }
    streamRing->write(samples.data(), count);
    monitorRing->write(samples.data(), count);
    meter->raise(peak);
}

} // namespace velmora
