#include "engine/BlockSize.h"

#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace velmora {
namespace {

using namespace std::chrono_literals;

constexpr auto look = 250ms;

/// Sees what a machine misses, which may depend on the size, and keeps the changes.
class BlockSizes : public testing::Test {
protected:
    using Misses = std::function<std::uint64_t(std::uint32_t frames)>;

    void run(std::chrono::milliseconds duration, const Misses& misses) {
        for (auto at = 0ms; at < duration; at += look) {
            const std::uint32_t before = size.frames();
            size.see(misses(before), look);
            changes += size.frames() == before ? 0 : 1;
        }
    }
    static std::uint64_t nothing(std::uint32_t /*frames*/) { return 0; }
    static std::uint64_t something(std::uint32_t /*frames*/) { return 1; }
    /// Blocks of fewer frames are missed all the time.
    static Misses below(std::uint32_t frames) {
        return [frames](std::uint32_t now) { return now < frames ? 1 : 0; };
    }

    BlockSize size;
    int changes = 0;
};

TEST_F(BlockSizes, BeginAtTheSmallestAndStayWhileNothingIsMissed) {
    run(24h, nothing);

    EXPECT_EQ(size.frames(), 128U);
    EXPECT_EQ(changes, 0);
}

TEST_F(BlockSizes, GrowAtTheFirstLookAfterABlockWasMissed) {
    run(look, something);

    EXPECT_EQ(size.frames(), 256U);
}

TEST_F(BlockSizes, TakeWhatIsMissedRightAfterAChangeForItsDoing) {
    run(look, something);
    run(look, something);
    EXPECT_EQ(size.frames(), 256U);

    run(look, something);
    EXPECT_EQ(size.frames(), 512U);
}

TEST_F(BlockSizes, GrowToTheLargestAndNoFurther) {
    run(1min, something);

    EXPECT_EQ(size.frames(), 1024U);
    EXPECT_EQ(changes, 3);
}

TEST_F(BlockSizes, AreTriedSmallerAfterACalmMinute) {
    run(look, something);
    run(59s, nothing);
    EXPECT_EQ(size.frames(), 256U);

    run(2s, nothing);
    EXPECT_EQ(size.frames(), 128U);
}

TEST_F(BlockSizes, CountTheMinuteFromTheLastMissedBlock) {
    run(2s, below(1024));
    ASSERT_EQ(size.frames(), 1024U);
    run(50s, nothing);
    run(look, something);
    run(50s, nothing);

    EXPECT_EQ(size.frames(), 1024U);
}

TEST_F(BlockSizes, AreTriedAgainTwiceAsLateAfterATryThatFailed) {
    run(62s, below(1024)); // the first try and its end
    ASSERT_EQ(size.frames(), 1024U);
    run(118s, nothing);
    EXPECT_EQ(size.frames(), 1024U);

    run(4s, nothing);
    EXPECT_EQ(size.frames(), 512U);
}

TEST_F(BlockSizes, GoDownStepByStepOnceALoadHasGone) {
    run(2s, something);
    ASSERT_EQ(size.frames(), 1024U);

    run(3min + 5s, nothing);

    EXPECT_EQ(size.frames(), 128U);
}

TEST_F(BlockSizes, ChangeTwentyFourTimesAtMostInADayOfSteadyLoad) {
    for (const std::uint32_t enough : {256U, 512U, 1024U, 2048U}) {
        size = {};
        changes = 0;
        run(24h, below(enough));
        EXPECT_LE(changes, 24) << "where " << enough << " frames are enough";
    }
}

TEST_F(BlockSizes, ChangeTwentyFourTimesAtMostInADayThatMissesABlockNowAndThen) {
    for (const double missesPerSecond : {3.0, 0.3, 0.1, 0.03, 0.01, 0.001}) {
        std::mt19937 random(7);
        size = {};
        changes = 0;
        run(24h, [&](std::uint32_t frames) -> std::uint64_t {
            const double rate = frames == 128 ? missesPerSecond * 10 : missesPerSecond;
            const double perLook = rate * std::chrono::duration<double>(look).count();
            return frames < 1024 && std::uniform_real_distribution(0.0, 1.0)(random) < perLook;
        });
        EXPECT_LE(changes, 24) << missesPerSecond;
    }
}

TEST_F(BlockSizes, ChangeTwiceADayOnceTheLoadHasLastedForDays) {
    run(72h, below(1024));
    changes = 0;

    run(72h, below(1024));

    EXPECT_LE(changes, 3 * 2);
}

TEST_F(BlockSizes, TakeALoadForANewOneAfterACalmDay) {
    run(24h, below(1024));
    run(48h, nothing);
    ASSERT_EQ(size.frames(), 128U);
    run(5s, below(1024));
    ASSERT_EQ(size.frames(), 1024U);

    run(62s, nothing);

    EXPECT_EQ(size.frames(), 512U);
}

TEST_F(BlockSizes, BeginAtTheLargestWhereNothingSpeaksForShorterOnes) {
    size.beginAtLargest();
    EXPECT_EQ(size.frames(), 1024U);

    run(61s, nothing);
    EXPECT_EQ(size.frames(), 512U);
}

} // namespace
} // namespace velmora
