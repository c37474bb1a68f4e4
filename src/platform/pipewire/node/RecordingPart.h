// RecordingPart.h: hands on channels of one device.
#pragma once

#include "platform/AudioUnits.h"
#include "platform/pipewire/node/FadeIn.h"
#include "platform/pipewire/node/MixPart.h"

#include <memory>
#include <vector>

namespace velmora::pipewire {

/// A channel that gets a link, the first one or another one later, fades in.
///
/// Threads: main; the callback runs on the node's real-time thread. Real-time: no.
class RecordingPart final : MixPart::Handler {
public:
    /// Errors: the status; nothing is left open.
    [[nodiscard]] static StatusOr<std::unique_ptr<RecordingPart>>
    open(std::shared_ptr<MixNode> node, std::uint32_t channels, ReceiveCallback receive);

    [[nodiscard]] const MixPart& part() const { return *part_; }

private:
    RecordingPart(std::uint32_t channels, ReceiveCallback receive);
    void process(const MixPart& part, std::uint32_t frames) noexcept override;
    /// Points `handed_` at the cycle from frame `from` on. Returns for how many frames, at most
    /// `most`.
    std::size_t point(std::size_t from, std::size_t most) noexcept;

    ReceiveCallback receive_;
    std::vector<const float*> blocks_; // real-time thread; whole cycle, one per channel
    std::vector<const float*> handed_; // real-time thread; the part that is handed on
    std::vector<FadeIn> fades_;        // of each channel, since it is linked
    std::vector<float> silence_;       // stands in for a channel without a link
    std::unique_ptr<MixPart> part_;    // last: its end is the end of all callbacks
};

} // namespace velmora::pipewire
