#include "effects/vector/Followers.h"

#include "effects/Signals.h"

#include <gtest/gtest.h>

#include <array>

namespace velmora {
namespace {

std::array<float, 4> valuesOf(Lanes lanes) {
    return {lanes[0], lanes[1], lanes[2], lanes[3]};
}

TEST(Lanes, LoadAFrameIntoTheirLowerHalf) {
    const std::array<float, 2> frame{0.25F, -0.5F};

    EXPECT_EQ(valuesOf(loadFrame(frame.data())), (std::array{0.25F, -0.5F, 0.0F, 0.0F}));
}

TEST(Lanes, GiveTheFirstOfTwoWhenEitherIsNotANumber) {
    const Lanes first{notANumber, 1.0F, 2.0F, -0.0F};
    const Lanes second{3.0F, notANumber, 4.0F, 0.0F};

    const Lanes largest = maxFirst(first, second);
    const Lanes smallest = minFirst(first, second);

    for (const Lanes chosen : {largest, smallest}) {
        EXPECT_TRUE(std::isnan(chosen[0]));
        EXPECT_EQ(chosen[1], 1.0F);
        EXPECT_TRUE(std::signbit(chosen[3])); // equal numbers: the first one too
    }
    EXPECT_EQ(largest[2], 4.0F);
    EXPECT_EQ(smallest[2], 2.0F);
}

TEST(Lanes, KnowWhetherAllAreFinite) {
    EXPECT_TRUE(allFinite(Lanes{0.0F, -3.4e38F, 1e-45F, 1.0F}));
    for (int lane = 0; lane < 4; ++lane) {
        for (const float bad : {notANumber, infinity, -infinity}) {
            Lanes lanes{};
            lanes[lane] = bad;
            EXPECT_FALSE(allFinite(lanes)) << lane;
        }
    }
}

TEST(Lanes, ReplaceOnlyWhatIsNotFinite) {
    const Lanes healed = finiteOr(Lanes{1.0F, notANumber, -infinity, -0.5F}, allLanes(7.0F));

    EXPECT_EQ(valuesOf(healed), (std::array{1.0F, 7.0F, 7.0F, -0.5F}));
}

TEST(Lanes, DropTheSignOnly) {
    const Lanes magnitudes = absolute(Lanes{-1.5F, 2.0F, -infinity, -0.0F});

    EXPECT_EQ(valuesOf(magnitudes), (std::array{1.5F, 2.0F, infinity, 0.0F}));
    EXPECT_FALSE(std::signbit(magnitudes[3]));
}

TEST(Lanes, LeaveAFollowersBadStateToTheCallerWhenToldTo) {
    const Lanes bad = allLanes(infinity);
    const Lanes half = allLanes(0.5F);

    EXPECT_EQ((follow<Check::everyFrame>(half, bad, half, allLanes(7.0F))[0]), 7.0F);
    EXPECT_FALSE(allFinite(follow<Check::atTheEnd>(half, bad, half, allLanes(7.0F))));
}

} // namespace
} // namespace velmora
