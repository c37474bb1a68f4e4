#include "platform/pipewire/PlaybackNode.h"

#include "platform/pipewire/Routes.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

namespace velmora::pipewire {
namespace {

enum PortIndex : std::size_t { leftPort, rightPort, monoPort, syncPort };

/// Frames that a source's ring can hold back for an output.
constexpr std::size_t mostInStore = 1024;

FilterNode::Setup nodeSetup(const PlaybackNode::Setup& setup) {
    using enum FilterNode::Direction;
    return {.name = setup.name,
            .description = "Velmora Output",
            .ports = {{std::string(own::left), output},
                      {std::string(own::right), output},
                      {std::string(own::mono), output},
                      {std::string(own::sync), input}},
            .blockFrames = setup.blockFrames,
            .rateHz = setup.rateHz};
}

} // namespace

PlaybackNode::PlaybackNode(RenderCallback render)
    : render_(std::move(render)), unheardLeft_(static_cast<std::size_t>(largestBlockFrames)),
      unheardRight_(static_cast<std::size_t>(largestBlockFrames)) {
}

StatusOr<std::unique_ptr<PlaybackNode>>
PlaybackNode::open(std::shared_ptr<NodeLoop> loop, const Setup& setup, RenderCallback render) {
    std::unique_ptr<PlaybackNode> playback(new PlaybackNode(std::move(render)));
    auto node = FilterNode::open(std::move(loop), nodeSetup(setup), *playback);
    if (!node) {
        return std::unexpected(node.error());
    }
    playback->node_ = *std::move(node);
    return playback;
}

void PlaybackNode::process(const FilterNode& node, const FilterNode::Cycle& cycle) noexcept {
    const Ports ports = {node.buffer(leftPort, cycle.frames),
                         node.buffer(rightPort, cycle.frames),
                         node.buffer(monoPort, cycle.frames)};
    // Its content is silence; taking it keeps the link, and with it the order of the nodes, alive.
    const bool isOrdered = node.buffer(syncPort, cycle.frames) != nullptr;
    if (isOrdered && !std::exchange(wasOrdered_, true)) {
        dropWhatCameBefore();
    }
    if (cycle.turn.isRepeated) {
        for (float* const port : ports) {
            std::fill_n(port, port == nullptr ? 0 : cycle.frames, 0.0F);
        }
        return;
    }
    if (cycle.turn.missedFrames > 0) {
        render({}, 0, cycle.turn.missedFrames);
    }
    const std::size_t largest = unheardLeft_.size();
    for (std::size_t done = 0; done < cycle.frames; done += largest) {
        render(ports, done, std::min(cycle.frames - done, largest));
    }
}

void PlaybackNode::dropWhatCameBefore() noexcept {
    render({}, 0, std::min<std::size_t>(mostInStore, unheardLeft_.size()));
}

void PlaybackNode::render(const Ports& ports, std::size_t from, std::size_t frames) noexcept {
    const auto at = [from](float* port, std::vector<float>& unheard) {
        return port == nullptr ? unheard.data() : port + from;
    };
    const std::array<float*, 2> channels = {at(ports[leftPort], unheardLeft_),
                                            at(ports[rightPort], unheardRight_)};
    render_(static_cast<std::int64_t>(frames), channels);
    if (float* const mono = ports[monoPort]) {
        for (std::size_t frame = 0; frame < frames; ++frame) {
            mono[from + frame] = 0.5F * (channels[0][frame] + channels[1][frame]);
        }
    }
}

} // namespace velmora::pipewire
