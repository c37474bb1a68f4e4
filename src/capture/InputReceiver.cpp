#include "capture/InputReceiver.h"

#include <algorithm>
#include <utility>

namespace velmora {

InputReceiver::InputReceiver(CaptureBoxes boxes, ChannelPair pair)
    : boxes_(std::move(boxes)), pair_(pair), scratch_(static_cast<std::size_t>(scratchFloats)) {
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
    const auto samples = std::span(scratch_).first(2 * count);
    for (std::size_t frame = 0; frame < count; ++frame) {
        samples[2 * frame] = left[frame];
        samples[2 * frame + 1] = right[frame];
    }
    boxes_.deliver(samples);
}

} // namespace velmora
