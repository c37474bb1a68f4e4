#include "capture/InputReceiver.h"

#include "engine/realtime/LevelMeter.h"
#include "engine/realtime/ParamBox.h"

#include <algorithm>
#include <utility>

namespace velmora {

InputReceiver::InputReceiver(CaptureChain chain,
                             std::shared_ptr<LevelMeter> meter,
                             ChannelPair pair)
    : chain_(std::move(chain)), meter_(std::move(meter)), pair_(pair),
      scratch_(static_cast<std::size_t>(scratchFloats)) {
}

void InputReceiver::receive(std::int64_t frames, std::span<const float* const> channels) noexcept {
    if (channels.empty()) {
        return;
    }
    const float* left = channels[std::min(pair_.left, channels.size() - 1)];
    const float* right = channels[std::min(pair_.right, channels.size() - 1)];
    const auto count = static_cast<std::size_t>(std::clamp<std::int64_t>(frames, 0, mostFrames));
    if (left == nullptr || right == nullptr || count == 0) {
        return;
    }
    const float gain = chain_.gain->get();
    float* samples = scratch_.data();
    for (std::size_t frame = 0; frame < count; ++frame) {
        samples[2 * frame] = gain * left[frame];
        samples[2 * frame + 1] = gain * right[frame];
    }
    meter_->raise(chain_.deliver(samples, static_cast<std::int64_t>(2 * count)));
}

} // namespace velmora
