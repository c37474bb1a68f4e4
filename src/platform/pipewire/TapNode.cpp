#include "platform/pipewire/TapNode.h"

#include "platform/AudioUnits.h"
#include "platform/pipewire/Downmix.h"
#include "platform/pipewire/Routes.h"

#include <algorithm>
#include <span>

namespace velmora::pipewire {
namespace {

constexpr std::size_t syncPort = 5; // after one port per TapInput

FilterNode::Setup nodeSetup(const TapNode::Setup& setup) {
    using enum FilterNode::Direction;
    return {.name = setup.name,
            .description = "Velmora Tap",
            .ports = {{std::string(own::left), input},
                      {std::string(own::right), input},
                      {std::string(own::centre), input},
                      {std::string(own::surroundLeft), input},
                      {std::string(own::surroundRight), input},
                      {std::string(own::sync), output}},
            .blockFrames = setup.blockFrames,
            .rateHz = setup.rateHz};
}

} // namespace

TapNode::TapNode(float scale, IOCallback callback)
    : scale_(scale), callback_(std::move(callback)),
      interleaved_(2 * static_cast<std::size_t>(largestBlockFrames)),
      silence_(static_cast<std::size_t>(largestBlockFrames)) {
}

StatusOr<std::unique_ptr<TapNode>>
TapNode::open(std::shared_ptr<NodeLoop> loop, const Setup& setup, IOCallback callback) {
    std::unique_ptr<TapNode> tap(new TapNode(setup.scale, std::move(callback)));
    auto node = FilterNode::open(std::move(loop), nodeSetup(setup), *tap);
    if (!node) {
        return std::unexpected(node.error());
    }
    tap->node_ = *std::move(node);
    return tap;
}

void TapNode::process(const FilterNode& node, const FilterNode::Cycle& cycle) noexcept {
    Inputs inputs{};
    for (std::size_t at = 0; at < inputs.size(); ++at) {
        inputs[at] = node.buffer(at, cycle.frames);
    }
    if (float* const sync = node.buffer(syncPort, cycle.frames)) {
        std::fill_n(sync, cycle.frames, 0.0F);
    }
    if (cycle.turn.isRepeated) {
        return;
    }
    if (cycle.turn.missedFrames > 0) {
        std::fill_n(interleaved_.data(), 2 * cycle.turn.missedFrames, 0.0F);
        handOn(cycle.turn.missedFrames);
    }
    const std::size_t largest = silence_.size();
    for (std::size_t done = 0; done < cycle.frames; done += largest) {
        const std::size_t frames = std::min(cycle.frames - done, largest);
        mixDown(inputs, done, frames);
        handOn(frames);
    }
}

void TapNode::mixDown(const Inputs& inputs, std::size_t from, std::size_t frames) noexcept {
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

void TapNode::handOn(std::size_t frames) noexcept {
    IOBuffer buffer{.data = interleaved_.data(), .samples = static_cast<std::int64_t>(2 * frames)};
    callback_(std::span(&buffer, 1));
}

} // namespace velmora::pipewire
