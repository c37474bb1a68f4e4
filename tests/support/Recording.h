// Recording.h: listens to a growing recording.
#pragma once

#include "support/Wait.h"
#include "support/WavFile.h"

#include <chrono>
#include <cstdint>
#include <filesystem>

namespace velmora::support {

/// A file of raw interleaved 32-bit floats at 48 kHz that a client program is still writing.
/// Channels are counted from 0.
class Recording {
public:
    Recording(std::filesystem::path file, std::uint32_t channels)
        : file_(std::move(file)), channels_(channels) {}

    /// Everything so far.
    [[nodiscard]] Sound all() const;
    /// The most recent part; shorter when there is less.
    [[nodiscard]] Sound latest(double seconds) const;
    [[nodiscard]] std::size_t frames() const;

    /// Level of a tone in the most recent quarter of a second, in dB; −200 while there is less.
    [[nodiscard]] double toneDb(std::uint32_t channel, double hz) const;

    /// Waits until it is so many frames longer than now. False when it is not within `limit`.
    [[nodiscard]] bool waitForMore(std::size_t more,
                                   std::chrono::milliseconds limit = patience) const;

    /// Waits until everything that was recorded before this call is older than what `toneDb` hears.
    /// False when the recording stands still.
    [[nodiscard]] bool waitForFreshSound() const;

    /// Waits until the tone is there at `db` within `tolerance` dB, for a whole quarter of a
    /// second.
    [[nodiscard]] bool hears(std::uint32_t channel,
                             double hz,
                             double db,
                             double tolerance = 0.5,
                             std::chrono::milliseconds limit = patience) const;

    /// Waits until the tone is below `threshold` dB, for a whole quarter of a second.
    [[nodiscard]] bool isSilentAt(std::uint32_t channel, double hz, double threshold = -80) const;

private:
    std::filesystem::path file_;
    std::uint32_t channels_;
};

} // namespace velmora::support
