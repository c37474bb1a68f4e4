#include "platform/pipewire/CycleClock.h"

#include <gtest/gtest.h>

namespace velmora::pipewire {
namespace {

constexpr std::uint32_t driver = 7;
constexpr std::uint32_t frames = 128;

/// Follows a graph of 128-frame cycles; `cycle` counts from 0.
class CycleClockTest : public testing::Test {
protected:
    CycleClock::Turn call(std::uint64_t cycle) {
        return clock.next(driver, 96000 + cycle * frames, frames);
    }

    CycleClock clock;
};

TEST_F(CycleClockTest, FindsNothingMissedFromCallToCall) {
    for (std::uint64_t cycle = 0; cycle < 4; ++cycle) {
        const auto turn = call(cycle);
        EXPECT_EQ(turn.missedFrames, 0U);
        EXPECT_FALSE(turn.isRepeated);
    }
}

TEST_F(CycleClockTest, SettlesAGapWithTheCallAfterIt) {
    call(0);

    EXPECT_EQ(call(3).missedFrames, 0U);
    EXPECT_EQ(call(4).missedFrames, 2 * frames);
    EXPECT_EQ(call(5).missedFrames, 0U);
}

TEST_F(CycleClockTest, SettlesOneGapWhileTheNextOpens) {
    call(0);
    call(2);

    EXPECT_EQ(call(5).missedFrames, frames);
    EXPECT_EQ(call(6).missedFrames, 2 * frames);
}

TEST_F(CycleClockTest, ALateCallThatSawTheNextPositionMissedNothing) {
    call(0);

    EXPECT_EQ(call(2).missedFrames, 0U); // in truth cycle 1, late
    const auto turn = call(2);
    EXPECT_EQ(turn.missedFrames, 0U);
    EXPECT_FALSE(turn.isRepeated);
    EXPECT_EQ(call(3).missedFrames, 0U);
}

TEST_F(CycleClockTest, ACallTooManyIsARepetition) {
    call(0);
    call(1);

    EXPECT_TRUE(call(1).isRepeated);
    EXPECT_FALSE(call(2).isRepeated);
}

TEST_F(CycleClockTest, LeavesGapsThatNoRingHoldsToTheRing) {
    call(0);
    call(9); // 8 missed cycles and this one are 1152 frames

    EXPECT_EQ(call(10).missedFrames, 0U);
}

TEST_F(CycleClockTest, MakesUpForTheLargestGapThatFits) {
    call(0);
    call(8); // 7 missed cycles and this one are 1024 frames

    EXPECT_EQ(call(9).missedFrames, 7 * frames);
}

TEST_F(CycleClockTest, StartsAfreshWithAnotherDriver) {
    call(0);
    clock.next(driver + 1, 500, frames);

    EXPECT_EQ(clock.next(driver + 1, 500 + frames, frames).missedFrames, 0U);
}

TEST_F(CycleClockTest, StartsAfreshWhenThePositionGoesFarBack) {
    call(1000);

    EXPECT_FALSE(call(0).isRepeated);
    EXPECT_EQ(call(1).missedFrames, 0U);
}

} // namespace
} // namespace velmora::pipewire
