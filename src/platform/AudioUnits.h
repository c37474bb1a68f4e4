// AudioUnits.h: callback-driven playback to one device and recording from one device.
#pragma once

#include "platform/AudioDevices.h"
#include "platform/Status.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>

namespace velmora {

/// Blocks of up to this many frames are handed over whole; every real-time scratch is made for it.
inline constexpr std::int64_t largestBlockFrames = 8192;

/// What lies between a capture and an output at most, so that sound stays fresh. A platform that
/// can choose asks for blocks that fit into it.
inline constexpr std::int64_t largestBacklogFrames = 1024;

/// Fills one block. Shape: one buffer per channel, `frames` floats each; a pointer may be null.
/// Threads: the unit's own real-time thread. Must not allocate, block or throw.
using RenderCallback = std::function<void(std::int64_t frames, std::span<float* const> channels)>;

/// Receives one block. Shape and threads: as `RenderCallback`.
using ReceiveCallback =
    std::function<void(std::int64_t frames, std::span<const float* const> channels)>;

/// Plays a stereo signal to one device. Threads: main. Real-time: no.
class OutputUnit {
public:
    virtual ~OutputUnit() = default; ///< stops

    virtual Status setDevice(AudioObjectID device) = 0;
    /// One entry per channel of the device: −1 = silent, 0 = left, 1 = right. Without a map the
    /// pair goes to the device's first two channels.
    virtual Status setChannelMap(std::span<const std::int32_t> map) = 0;
    /// Hz, as blocks come now; 0 before `setDevice`.
    [[nodiscard]] virtual double sampleRate() const = 0;
    /// Starts pulling two-channel blocks.
    virtual Status start(RenderCallback render) = 0;
    /// When this returns, the callback is not running and will not run again.
    virtual void stop() noexcept = 0;
    /// False once the service, or what carried a started unit there, has gone: it never plays
    /// again. A device that went and comes back is played to again, and is no reason.
    [[nodiscard]] virtual bool isAlive() const = 0;
};

/// Records channels of one device. Threads: main. Real-time: no.
class InputUnit {
public:
    virtual ~InputUnit() = default; ///< stops

    virtual Status setDevice(AudioObjectID device) = 0;
    [[nodiscard]] virtual std::uint32_t channelCount() const = 0; ///< 0 before `setDevice`
    /// The only channels that are handed over, from the 0-based `first` on; without it, or after
    /// another `setDevice`, every channel is.
    virtual Status setChannels(std::uint32_t first, std::uint32_t count) = 0;
    [[nodiscard]] virtual double sampleRate() const = 0; ///< Hz; 0 when unknown
    virtual Status start(ReceiveCallback receive) = 0;
    /// When this returns, the callback is not running and will not run again.
    virtual void stop() noexcept = 0;
    /// As `OutputUnit::isAlive`.
    [[nodiscard]] virtual bool isAlive() const = 0;
};

/// How the blocks come in which every started unit and every open tap exchange their sound.
struct BlockReport {
    std::uint32_t frames{}; ///< of the latest block; 0 while there is none
    /// Blocks that the clock went on without, because somebody was late; so far.
    std::uint64_t missed{};
    /// Whether the audio thread goes before other programs; none while that is not known.
    std::optional<bool> isRealTime{};

    bool operator==(const BlockReport&) const = default;
};

/// Threads: main. Real-time: no.
class AudioUnits {
public:
    virtual ~AudioUnits() = default;

    /// Null when the platform has no unit to give.
    [[nodiscard]] virtual std::unique_ptr<OutputUnit> makeOutput() = 0;
    [[nodiscard]] virtual std::unique_ptr<InputUnit> makeInput() = 0;

    /// From now on units and taps ask for blocks of at least so many frames, whatever was requested
    /// for their devices; 0 = as requested. Other programs may want smaller ones, and get them.
    virtual void askForBlocksOf(std::uint32_t leastFrames) = 0;
    [[nodiscard]] virtual BlockReport blocks() const = 0;
};

} // namespace velmora
