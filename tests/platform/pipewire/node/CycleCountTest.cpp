#include "platform/pipewire/node/CycleCount.h"

#include <gtest/gtest.h>

namespace velmora::pipewire {
namespace {

/// A clock that runs in blocks of 128 frames at 48 kHz.
class CycleCounts : public testing::Test {
protected:
    /// The node is called; `missed` cycles went on without it before.
    void call(std::uint64_t missed = 0) {
        clock.position += (missed + 1) * clock.frames;
        count.begin(clock);
    }

    Cycle clock{.clock = 31, .position = 1'000'000, .frames = 128, .rateHz = 48000};
    CycleCount count;
};

TEST_F(CycleCounts, KnowNothingBeforeTheFirst) {
    EXPECT_EQ(count.rateHz(), 0U);
    EXPECT_EQ(count.frames(), 0U);
    EXPECT_EQ(count.missed(), 0U);
}

TEST_F(CycleCounts, AreOfTheLatest) {
    call();
    clock.frames = 256;
    clock.rateHz = 96000;
    call();

    EXPECT_EQ(count.rateHz(), 96000U);
    EXPECT_EQ(count.frames(), 256U);
}

TEST_F(CycleCounts, MissNothingWhileTheClockGoesByBlocks) {
    for (int cycle = 0; cycle < 100; ++cycle) {
        call();
    }
    EXPECT_EQ(count.missed(), 0U);
}

TEST_F(CycleCounts, MissWhatTheClockWentOnWithout) {
    call();
    call(3);
    call();
    call(1);

    EXPECT_EQ(count.missed(), 4U);
}

TEST_F(CycleCounts, DoNotTakeAnotherLengthForAMissedOne) {
    call();
    clock.frames = 1024;
    call(); // a clock that counts the new length for the block before
    call();
    clock.frames = 128;
    clock.position += 1024 - 128; // one that counts the old length
    call();

    EXPECT_EQ(count.missed(), 0U);
}

TEST_F(CycleCounts, DoNotTakeAnotherClockForAMissedOne) {
    call();
    clock.clock = 32;
    clock.position = 5'000'000;
    call();

    EXPECT_EQ(count.missed(), 0U);
}

TEST_F(CycleCounts, DoNotCountWhileTheNodeWasStopped) {
    call();
    count.restart();
    call(20);
    EXPECT_EQ(count.missed(), 0U);

    call(1);
    EXPECT_EQ(count.missed(), 1U);
}

TEST_F(CycleCounts, DoNotCountASleepOfTheMachine) {
    call();
    call(375);

    EXPECT_EQ(count.missed(), 0U);
}

TEST_F(CycleCounts, DoNotCountAClockThatIsSetBack) {
    call();
    clock.position = 0;
    call();

    EXPECT_EQ(count.missed(), 0U);
}

TEST_F(CycleCounts, CountWhatTheClockItselfLost) {
    call();
    clock.clockLost = 40;
    call();
    call();

    EXPECT_EQ(count.missed(), 1U);
}

} // namespace
} // namespace velmora::pipewire
