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
    : receive_(std::move(receive)), blocks_(channels), handed_(channels),
      silence_(static_cast<std::size_t>(largestBlockFrames)) {
}

StatusOr<std::unique_ptr<RecordingNode>> RecordingNode::open(const Setup& setup,
                                                             ReceiveCallback receive) {
    std::unique_ptr<RecordingNode> recording(new RecordingNode(setup.channels, std::move(receive)));
    auto node = FilterNode::open(nodeSetup(setup), *recording);
    if (!node) {
        return std::unexpected(node.error());
    }
    recording->node_ = *std::move(node);
    return recording;
}

void RecordingNode::process(const FilterNode& node, const FilterNode::Cycle& cycle) noexcept {
    for (std::size_t at = 0; at < blocks_.size(); ++at) {
        blocks_[at] = node.buffer(at, cycle.frames);
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
    const std::size_t largest = silence_.size();
    for (std::size_t done = 0; done < cycle.frames; done += largest) {
        for (std::size_t at = 0; at < blocks_.size(); ++at) {
            handed_[at] = blocks_[at] == nullptr ? silence_.data() : blocks_[at] + done;
        }
        receive_(static_cast<std::int64_t>(std::min(cycle.frames - done, largest)), handed_);
    }
}

} // namespace velmora::pipewire
