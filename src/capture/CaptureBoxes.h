// CaptureChain.h: what every captured block goes through on its way to the outputs.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

namespace velmora {

class EffectsChain;
class ParamBox;
class RingBuffer;

/// The objects that one running capture shares with the engine.
struct CaptureChain {
    std::vector<std::shared_ptr<RingBuffer>> rings; ///< stream first, then monitor
    std::shared_ptr<ParamBox> gain;                 ///< linear
    std::shared_ptr<EffectsChain> fx;

    /// Runs the effects over the block in place, then writes it to every ring. An empty block only
    /// lets the effects take up what was handed to them.
    /// Shape: interleaved stereo, `count` floats = 2 × frames.
    /// Threads: capture thread. Real-time: yes (short locks, one after the other).
    /// @return the largest absolute sample after the effects; one that is not a number counts as 0
    [[nodiscard]] float deliver(float* samples, std::int64_t count) const noexcept;
};

} // namespace velmora
