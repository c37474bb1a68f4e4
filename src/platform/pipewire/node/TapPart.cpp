#include "platform/pipewire/node/TapPart.h"

#include "platform/AudioUnits.h"

#include <algorithm>

namespace velmora::pipewire {

TapPart::TapPart(float scale, TapCallback callback)
    : scale_(scale), callback_(std::move(callback)),
      interleaved_(2 * static_cast<std::size_t>(largestBlockFrames)),
      silence_(static_cast<std::size_t>(largestBlockFrames)) {
}

StatusOr<std::unique_ptr<TapPart>>
TapPart::open(std::shared_ptr<MixNode> node, float scale, TapCallback callback) {
    std::unique_ptr<TapPart> tap(new TapPart(scale, std::move(callback)));
    auto part = MixPart::open(
        std::move(node), {.kind = MixPart::Kind::capture, .ports = tapInputCount}, *tap);
    if (!part) {
        return std::unexpected(part.error());
    }
    tap->part_ = *std::move(part);
    return tap;
}

void TapPart::process(const MixPart& part, std::uint32_t frames) noexcept {
    Inputs inputs{};
    for (std::size_t at = 0; at < inputs.size(); ++at) {
        inputs[at] = part.buffer(at, frames);
    }
    const std::size_t largest = silence_.size();
    for (std::size_t done = 0; done < frames; done += largest) {
        const std::size_t length = std::min(frames - done, largest);
        mixDown(inputs, done, length);
        handOn(length);
    }
}

void TapPart::mixDown(const Inputs& inputs, std::size_t from, std::size_t frames) noexcept {
    const auto at = [&](TapInput input) {
        const float* const block = inputs[static_cast<std::size_t>(input)];
        return block == nullptr ? silence_.data() : block + from;
    };
    const float* const left = at(TapInput::left);
    const float* const right = at(TapInput::right);
    const float* const centre = at(TapInput::centre);
    const float* const surroundLeft = at(TapInput::surroundLeft);
    const float* const surroundRight = at(TapInput::surroundRight);
    for (std::size_t frame = 0; frame < frames; ++frame) {
        interleaved_[2 * frame] =
            scale_ * (left[frame] + surroundGain * (centre[frame] + surroundLeft[frame]));
        interleaved_[2 * frame + 1] =
            scale_ * (right[frame] + surroundGain * (centre[frame] + surroundRight[frame]));
    }
}

void TapPart::handOn(std::size_t frames) noexcept {
    callback_({.data = interleaved_.data(), .samples = static_cast<std::int64_t>(2 * frames)});
}

} // namespace velmora::pipewire
