// CaptureBoxes.h: what every captured block goes through on its way to the outputs.
#pragma once

#include <memory>
#include <span>

namespace velmora {

class EffectsChain;
class LevelMeter;
class ParamBox;
class RingBuffer;

/// The boxes that connect one capture to the engine and to the outputs. None is null.
struct CaptureBoxes {
    std::shared_ptr<RingBuffer> streamRing;  ///< towards the virtual microphone
    std::shared_ptr<RingBuffer> monitorRing; ///< the same samples, towards the monitoring output
    std::shared_ptr<ParamBox> gain;          ///< linear
    std::shared_ptr<EffectsChain> fx;
    std::shared_ptr<LevelMeter> meter;

    /// Applies the gain, then the effects, in place; writes the block to both rings and raises the
    /// meter to its peak. The gain comes first: the compressor and the meter see the gained signal.
    /// An empty block only lets the effects take up what was handed to them.
    /// Shape: interleaved stereo.
    /// Threads: capture thread. Real-time: yes (short locks, one after the other).
    /// @param factor  by which the platform has lowered the block; linear
    void deliver(std::span<float> samples, float factor = 1.0F) const noexcept;
};

} // namespace velmora
