// CycleClock.h: keeps a node's account of graph time when cycles go by without a call.
#pragma once

#include <algorithm>
#include <cstdint>

namespace velmora::pipewire {

/// Follows the graph's position from call to call.
///
/// A thread that is late misses cycles that others had, or is called twice for one. A capture that
/// hands on silence for what it missed, and an output that takes and drops as much, have both
/// accounted for the same time, and a ring between them keeps its backlog; otherwise every missed
/// cycle would stay in the ring as delay.
///
/// A late call may see the position of the next cycle already, whose own call then follows at the
/// same position. So a gap is settled one call later, when it is known whether that happened.
///
/// Threads: one, the real-time thread of a node. Real-time: yes.
class CycleClock {
public:
    /// What a call is to do with its block, after having made up for `missedFrames`.
    struct Turn {
        std::uint32_t missedFrames{};
        bool isRepeated{}; ///< this time was accounted for before: hand on nothing, take nothing
    };

    /// Larger gaps, together with a block, do not fit between the two ends of a ring (1024 stereo
    /// frames), which then puts things right by itself.
    static constexpr std::int64_t largestGapFrames = 1024;

    /// To be called once per call of the node.
    /// @param clock     the driver's number; positions of two drivers have nothing in common
    /// @param position  frames, start of this cycle
    /// @param frames    length of this cycle
    Turn next(std::uint32_t clock, std::uint64_t position, std::uint32_t frames) noexcept {
        const auto gap = static_cast<std::int64_t>(position - expected_);
        const bool isSameClock = isRunning_ && clock == clock_;
        isRunning_ = true;
        clock_ = clock;
        expected_ = position + frames;
        if (!isSameClock || gap < -largestGapFrames || gap + frames > largestGapFrames) {
            owed_ = 0;
            return {};
        }
        const std::int64_t due = owed_ + std::min<std::int64_t>(gap, 0);
        owed_ = std::max<std::int64_t>(gap, 0);
        if (due <= -static_cast<std::int64_t>(frames)) {
            return {.isRepeated = true};
        }
        return {.missedFrames = static_cast<std::uint32_t>(std::max<std::int64_t>(due, 0))};
    }

private:
    bool isRunning_ = false;
    std::uint32_t clock_ = 0;
    std::uint64_t expected_ = 0;
    std::int64_t owed_ = 0; // frames missed before the previous call
};

} // namespace velmora::pipewire
