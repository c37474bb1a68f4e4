#include "platform/pipewire/RecordingNode.h"

#include "platform/pipewire/Routes.h"

#include <algorithm>

namespace velmora::pipewire {
namespace {

FilterNode::Setup nodeSetup(const RecordingNode::Setup& setup) {
    FilterNode::Setup made{.name = setup.name,
                           .description = "Velmora Input",
                           .ports = {},
                           .blockFrames = setup.blockFrames,
                           .rateHz = setup.rateHz};
    for (std::uint32_t at = 0; at < setup.channels; ++at) {
        made.ports.push_back({own::channel(at), FilterNode::Direction::input});
    }
    made.ports.push_back({std::string(own::sync), FilterNode::Direction::output});
    return made;
}

} // namespace

RecordingNode::RecordingNode(std::uint32_t channels, ReceiveCallback receive)
    : receive_(std::move(receive)), blocks_(channels), handed_(channels), fades_(channels),
      silence_(static_cast<std::size_t>(largestBlockFrames)) {
}

StatusOr<std::unique_ptr<RecordingNode>>
RecordingNode::open(std::shared_ptr<NodeLoop> loop, const Setup& setup, ReceiveCallback receive) {
    std::unique_ptr<RecordingNode> recording(new RecordingNode(setup.channels, std::move(receive)));
    auto node = FilterNode::open(std::move(loop), nodeSetup(setup), *recording);
    if (!node) {
        return std::unexpected(node.error());
    }
    recording->node_ = *std::move(node);
    return recording;
}

void RecordingNode::process(const FilterNode& node, const FilterNode::Cycle& cycle) noexcept {
    for (std::size_t at = 0; at < blocks_.size(); ++at) {
        blocks_[at] = node.buffer(at, cycle.frames);
        if (blocks_[at] == nullptr) {
            fades_[at].restart();
        }
    }
    if (float* const sync = node.buffer(blocks_.size(), cycle.frames)) {
        std::fill_n(sync, cycle.frames, 0.0F);
    }
    if (cycle.turn.isRepeated) {
        return;
    }
    if (cycle.turn.missedFrames > 0) {
        std::ranges::fill(handed_, silence_.data());
        receive_(static_cast<std::int64_t>(cycle.turn.missedFrames), handed_);
    }
    for (std::size_t done = 0; done < cycle.frames;) {
        const std::size_t frames = point(done, cycle.frames - done);
        receive_(static_cast<std::int64_t>(frames), handed_);
        done += frames;
    }
}

std::size_t RecordingNode::point(std::size_t from, std::size_t most) noexcept {
    const bool areAllRisen = std::ranges::all_of(fades_, &FadeIn::isOver);
    const std::size_t frames = std::min(most, areAllRisen ? silence_.size() : FadeIn::frames);
    for (std::size_t at = 0; at < blocks_.size(); ++at) {
        if (blocks_[at] == nullptr) {
            handed_[at] = silence_.data();
        } else if (fades_[at].isOver()) {
            handed_[at] = blocks_[at] + from;
        } else {
            handed_[at] = fades_[at].next({blocks_[at] + from, frames});
        }
    }
    return frames;
}

} // namespace velmora::pipewire
