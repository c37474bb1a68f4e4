// TapPart.h: hears one application and hands it on as interleaved stereo.
#pragma once

#include "platform/ApplicationTaps.h"
#include "platform/pipewire/node/MixPart.h"
#include "platform/pipewire/view/Downmix.h"

#include <array>
#include <memory>
#include <vector>

namespace velmora::pipewire {

/// Threads: main; the callback runs on the node's real-time thread. Real-time: no.
class TapPart final : MixPart::Handler {
public:
    /// @param scale  linear, applied to every sample
    /// Errors: the status; nothing is left open.
    [[nodiscard]] static StatusOr<std::unique_ptr<TapPart>>
    open(std::shared_ptr<MixNode> node, float scale, TapCallback callback);

    [[nodiscard]] const MixPart& part() const { return *part_; }

private:
    using Inputs = std::array<const float*, tapInputCount>; // null while nothing is linked

    TapPart(float scale, TapCallback callback);
    void process(const MixPart& part, std::uint32_t frames) noexcept override;
    /// Fills `interleaved_` from `frames` frames of the inputs' blocks, starting at frame `from`.
    void mixDown(const Inputs& inputs, std::size_t from, std::size_t frames) noexcept;
    void handOn(std::size_t frames) noexcept;

    float scale_;
    TapCallback callback_;
    std::vector<float> interleaved_; // real-time thread; one largest block
    std::vector<float> silence_;     // stands in for ports without a link
    std::unique_ptr<MixPart> part_;  // last: its end is the end of all callbacks
};

} // namespace velmora::pipewire
