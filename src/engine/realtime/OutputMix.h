// OutputMix.h: everything that one output does for a block.
#pragma once

#include "engine/realtime/Limiter.h"
#include "engine/realtime/ParamBox.h"
#include "engine/realtime/RingSetBox.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace velmora {

/// Sums the output's rings with unit weight, applies its volume, then its limiter, and writes the
/// result to the device's channels. A sample that is not finite counts as 0, wherever it arises.
class OutputMix {
public:
    /// Frames. A larger request is rendered in parts of this size.
    static constexpr std::int64_t largestPart = 8192;

    /// Makes the scratch. Real-time: no.
    OutputMix(std::shared_ptr<RingSetBox> rings,
              std::shared_ptr<Limiter> limiter,
              std::shared_ptr<ParamBox> volume);

    /// Shape: one buffer of `frames` floats per channel; the first gets left, every further one
    /// right; null pointers are skipped. Without channels the rings drain all the same.
    /// Threads: the render thread. Real-time: yes (lock held for one pointer copy).
    void render(std::int64_t frames, std::span<float* const> channels) noexcept;

private:
    void mix(const RingSetBox::Rings& rings, std::span<float> mixed) noexcept;
    static void applyVolume(float volume, std::span<float> mixed) noexcept;

    std::shared_ptr<RingSetBox> rings_;
    std::shared_ptr<Limiter> limiter_;
    std::shared_ptr<ParamBox> volume_;
    std::vector<float> mixed_; // interleaved stereo
    std::vector<float> ring_;  // interleaved stereo, what one ring gave
};

} // namespace velmora
