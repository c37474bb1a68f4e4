#include "platform/pipewire/PlaybackNode.h"

#include "platform/pipewire/Routes.h"

#include <algorithm>
#include <array>
#include <span>

namespace velmora::pipewire {
namespace {

enum PortIndex : std::size_t { leftPort, rightPort, syncPort };

FilterNode::Setup nodeSetup(std::string name, std::uint32_t blockFrames, double rateHz) {
    using enum FilterNode::Direction;
    return {.name = std::move(name),
            .description = "Velmora Output",
            .ports = {{std::string(own::left), output},
                      {std::string(own::right), output},
                      {std::string(own::sync), input}},
            .blockFrames = blockFrames,
            .rateHz = rateHz};
}

} // namespace

PlaybackNode::PlaybackNode(RenderCallback render)
    : render_(std::move(render)), unheardLeft_(static_cast<std::size_t>(largestBlockFrames)),
      unheardRight_(static_cast<std::size_t>(largestBlockFrames)) {
}

StatusOr<std::unique_ptr<PlaybackNode>> PlaybackNode::open(std::string name,
                                                           std::uint32_t blockFrames,
                                                           double rateHz,
                                                           RenderCallback render) {
    std::unique_ptr<PlaybackNode> playback(new PlaybackNode(std::move(render)));
    auto node = FilterNode::open(nodeSetup(std::move(name), blockFrames, rateHz), *playback);
    if (!node) {
        return std::unexpected(node.error());
    }
    playback->node_ = *std::move(node);
    return playback;
}

void PlaybackNode::process(const FilterNode& node, const FilterNode::Cycle& cycle) noexcept {
    const std::size_t total = cycle.frames;
    float* const left = node.buffer(leftPort, cycle.frames);
    float* const right = node.buffer(rightPort, cycle.frames);
    // Its content is silence; taking it keeps the link, and with it the order of the nodes, alive.
    static_cast<void>(node.buffer(syncPort, cycle.frames));
    if (cycle.turn.isRepeated) {
        for (float* const channel : {left, right}) {
            std::fill_n(channel, channel == nullptr ? 0 : total, 0.0F);
        }
        return;
    }
    if (cycle.turn.missedFrames > 0) {
        const std::array<float*, 2> dropped = {unheardLeft_.data(), unheardRight_.data()};
        render_(static_cast<std::int64_t>(cycle.turn.missedFrames), dropped);
    }
    for (std::size_t done = 0; done < total;) {
        const std::size_t block = std::min(total - done, unheardLeft_.size());
        const std::array<float*, 2> channels = {left == nullptr ? unheardLeft_.data() : left + done,
                                                right == nullptr ? unheardRight_.data()
                                                                 : right + done};
        render_(static_cast<std::int64_t>(block), channels);
        done += block;
    }
}

} // namespace velmora::pipewire
