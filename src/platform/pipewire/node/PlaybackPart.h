// PlaybackPart.h: pulls stereo blocks for one device.
#pragma once

#include "platform/AudioUnits.h"
#include "platform/pipewire/node/MixPart.h"
#include "platform/pipewire/view/Routes.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace velmora::pipewire {

/// Threads: main; the callback runs on the node's real-time thread. Real-time: no.
class PlaybackPart final : MixPart::Handler {
public:
    /// Errors: the status; nothing is left open.
    [[nodiscard]] static StatusOr<std::unique_ptr<PlaybackPart>> open(std::shared_ptr<MixNode> node,
                                                                      RenderCallback render);

    [[nodiscard]] const MixPart& part() const { return *part_; }

private:
    explicit PlaybackPart(RenderCallback render);
    using Ports = std::array<float*, playbackPortCount>; // null while nothing is linked

    void process(const MixPart& part, std::uint32_t frames) noexcept override;
    /// Fills `frames` of the ports' blocks, starting at frame `from`.
    void render(const Ports& ports, std::size_t from, std::size_t frames) noexcept;
    /// What captures handed on before this output took it would stay as delay for good.
    void dropWhatCameBefore() noexcept;

    RenderCallback render_;
    bool isHeard_ = false;           // real-time thread; somebody was linked to it once
    std::vector<float> unheardLeft_; // real-time thread; takes the sound of a port without a link
    std::vector<float> unheardRight_;
    std::unique_ptr<MixPart> part_; // last: its end is the end of all callbacks
};

} // namespace velmora::pipewire
