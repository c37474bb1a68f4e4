// FadeIn.h: lets one channel begin without a click.
#pragma once

#include <array>
#include <cstddef>
#include <span>

namespace velmora::pipewire {

/// A signal that begins in the middle of a wave clicks; this one rises over a few milliseconds,
/// from its first sample that is not silence: a device may need some blocks before it plays.
///
/// Formula: smoothstep 3t² − 2t³ over `frames` frames; no edge at either end.
/// Threads: the node's real-time thread. Real-time: yes.
class FadeIn {
public:
    static constexpr std::size_t frames = 256; ///< 5.3 ms at 48 kHz

    /// The signal has stopped: the next one rises again.
    void restart() noexcept { done_ = 0; }
    [[nodiscard]] bool isOver() const noexcept { return done_ >= frames; }

    /// Returns at most `frames` frames of `block`, risen as far as they have come.
    [[nodiscard]] const float* next(std::span<const float> block) noexcept {
        for (std::size_t at = 0; at < block.size(); ++at) {
            const float t = static_cast<float>(done_) / static_cast<float>(frames);
            risen_[at] = block[at] * t * t * (3.0F - 2.0F * t);
            const bool isWaiting = done_ == 0 && block[at] == 0.0F;
            done_ += isWaiting || isOver() ? 0 : 1;
        }
        return risen_.data();
    }

private:
    std::size_t done_ = 0;
    std::array<float, frames> risen_{};
};

} // namespace velmora::pipewire
