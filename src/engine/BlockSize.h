// BlockSize.h: how long the mix's blocks should be on this machine, by what was missed so far.
#pragma once

#include "platform/GrowingPause.h"

#include <chrono>
#include <cstdint>

namespace velmora {

/// Short blocks are a means, low latency, and a machine that is busy loses them; each change of the
/// length may cost some program a block. So they grow as soon as one was missed, and are tried
/// shorter again after a calm time: a minute, and twice as long after each try that failed. Under a
/// load that stays there are some twenty changes in a first day, and two in each that follows.
///
/// Threads: one. Units: frames.
class BlockSize {
public:
    using Time = std::chrono::milliseconds;

    static constexpr std::uint32_t smallest = 128;
    static constexpr std::uint32_t largest = 1024;

    /// To be told at steady intervals, a quarter of a second or so, what was missed in each.
    /// @param passed  since the last call, or since `settle`
    void see(std::uint64_t missedBlocks, Time passed);

    /// Where nothing speaks for the shortest ones: begins with the longest, and finds out.
    void beginAtLargest();

    /// Something else than this has changed what everybody is called with: what is missed right now
    /// says nothing.
    void settle() { settling_ = settlingTime; }

    [[nodiscard]] std::uint32_t frames() const { return frames_; }

private:
    static constexpr Time settlingTime{200};
    static constexpr Time shortestWait = std::chrono::minutes(1);
    static constexpr Time longestWait = std::chrono::days(1);
    /// A load that came back after so long is another one.
    static constexpr Time provenAfter = std::chrono::hours(6);

    void grow();
    void shrink();

    std::uint32_t frames_ = smallest;
    bool isTry_ = false;    ///< the latest change was to shorter ones
    bool hasTried_ = false; ///< an earlier one was, under what may be the load of now
    Time calm_{};           ///< since the latest change or missed block
    Time settling_{};       ///< what is missed until then comes of the change itself
    Time wait_ = shortestWait;
    GrowingPause waits_{2 * shortestWait, longestWait};
};

} // namespace velmora
