// InputReceiver.h: turns blocks of an input device into captured stereo blocks.
#pragma once

#include "capture/CaptureBoxes.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace velmora {

/// Which two channels of a device make the stereo pair, 0-based.
struct ChannelPair {
    std::size_t left{};
    std::size_t right{};

    bool operator==(const ChannelPair&) const = default;
};

/// Threads: made on main; `receive` on the input's own real-time thread only.
class InputReceiver {
public:
    static constexpr std::int64_t scratchFloats = 8192;
    /// Deliberate: frames beyond this in one block are dropped.
    static constexpr std::int64_t mostFrames = scratchFloats / 2;

    InputReceiver(CaptureBoxes boxes, ChannelPair pair);

    /// Skips a block without buffers or without data on a channel of the pair; a channel beyond
    /// the buffers is read from the last one.
    /// Shape: one buffer of `frames` floats per channel.
    /// Real-time: yes (short locks, one after the other).
    void receive(std::int64_t frames, std::span<const float* const> channels) noexcept;

private:
    const CaptureBoxes boxes_;
    const ChannelPair pair_;
    std::vector<float> scratch_; // interleaved stereo
};

} // namespace velmora
