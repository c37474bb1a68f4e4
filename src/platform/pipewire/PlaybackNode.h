// PlaybackNode.h: pulls stereo blocks for one device.
#pragma once

#include "platform/AudioUnits.h"
#include "platform/pipewire/FilterNode.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace velmora::pipewire {

/// Threads: main. Real-time: no; the callback runs on the loop's real-time thread.
class PlaybackNode final : FilterNode::Handler {
public:
    struct Setup {
        std::string name;
        std::uint32_t blockFrames{};
        double rateHz{};
    };

    /// Errors: the status; nothing is left open.
    [[nodiscard]] static StatusOr<std::unique_ptr<PlaybackNode>>
    open(std::shared_ptr<NodeLoop> loop, const Setup& setup, RenderCallback render);

private:
    explicit PlaybackNode(RenderCallback render);
    using Ports = std::array<float*, 3>; // left, right, mono; null while nothing is linked

    void process(const FilterNode& node, const FilterNode::Cycle& cycle) noexcept override;
    /// Fills `frames` of the ports' blocks, starting at frame `from`.
    void render(const Ports& ports, std::size_t from, std::size_t frames) noexcept;
    /// What captures handed on before they and this node had an order would stay as delay for good.
    void dropWhatCameBefore() noexcept;

    RenderCallback render_;
    bool wasOrdered_ = false; // real-time thread; a capture has run before this node in its cycle
    std::vector<float> unheardLeft_; // real-time thread; takes the sound of a port without a link
    std::vector<float> unheardRight_;
    std::unique_ptr<FilterNode> node_; // last: its end is the end of all callbacks
};

} // namespace velmora::pipewire
