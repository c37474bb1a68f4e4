#include "platform/pipewire/TapNode.h"

#include "platform/AudioUnits.h"
#include "platform/pipewire/Downmix.h"
#include "platform/pipewire/Routes.h"

#include <algorithm>
#include <array>
#include <span>

namespace velmora::pipewire {
namespace {

constexpr std::size_t inputCount = 5; // one per TapInput
constexpr std::size_t syncPort = inputCount;

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

StatusOr<std::unique_ptr<TapNode>> TapNode::open(const Setup& setup, IOCallback callback) {
    std::unique_ptr<TapNode> tap(new TapNode(setup.scale, std::move(callback)));
    auto node = FilterNode::open(nodeSetup(setup), *tap);
    if (!node) {
        return std::unexpected(node.error());
    }
    tap->node_ = *std::move(node);
    return tap;
}

void TapNode::process(const FilterNode& node, const FilterNode::Cycle& cycle) noexcept {
    const std::size_t total = cycle.frames;
    std::array<const float*, inputCount> inputs{};
    for (std::size_t at = 0; at < inputCount; ++at) {
        inputs[at] = node.buffer(at, cycle.frames);
    }
    if (float* const sync = node.buffer(syncPort, cycle.frames)) {
        std::fill_n(sync, total, 0.0F);
    }
    if (cycle.turn.isRepeated) {
        return;
    }
    if (cycle.turn.missedFrames > 0) {
        std::fill_n(interleaved_.data(), 2 * cycle.turn.missedFrames, 0.0F);
        handOn(cycle.turn.missedFrames);
    }
    for (std::size_t done = 0; done < total;) {
        const std::size_t block = std::min(total - done, silence_.size());
        const auto from = [&](TapInput input) {
            const float* const data = inputs[static_cast<std::size_t>(input)];
            return data == nullptr ? silence_.data() : data + done;
        };
        const float* const left = from(TapInput::left);
        const float* const right = from(TapInput::right);
        const float* const centre = from(TapInput::centre);
        const float* const surroundLeft = from(TapInput::surroundLeft);
        const float* const surroundRight = from(TapInput::surroundRight);
        for (std::size_t at = 0; at < block; ++at) {
            interleaved_[2 * at] =
                scale_ * (left[at] + surroundGain * (centre[at] + surroundLeft[at]));
            interleaved_[2 * at + 1] =
                scale_ * (right[at] + surroundGain * (centre[at] + surroundRight[at]));
        }
        handOn(block);
        done += block;
    }
}

void TapNode::handOn(std::size_t frames) noexcept {
    IOBuffer buffer{.data = interleaved_.data(), .samples = static_cast<std::int64_t>(2 * frames)};
    callback_(std::span(&buffer, 1));
}

} // namespace velmora::pipewire
