#include "ui/kit/controls/Scales.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace velmora {

namespace {

constexpr double minDB = -60.0;
constexpr double maxDB = 6.0;
constexpr double rangeDb = 66.0;

double gainOf(double db) {
    return std::pow(10.0, db / 20.0);
}
double position(double gain) {
    return Scales::faderPosition(gain, minDB, maxDB);
}
double gainAt(double place) {
    return Scales::gainAtPosition(place, minDB, maxDB);
}

TEST(ScalesGainText, RoundsToWholeDecibelsWithTheTypographicMinus) {
    EXPECT_EQ(Scales::gainText(1.0), "0 dB");
    EXPECT_EQ(Scales::gainText(1.0593), "+1 dB") << "a little more than half a decibel";
    EXPECT_EQ(Scales::gainText(0.5), "\u22126 dB");
    EXPECT_EQ(Scales::gainText(0.0), "\u2212\u221E");
    EXPECT_EQ(Scales::gainText(-1.0), "\u2212\u221E");
    EXPECT_EQ(Scales::gainText(std::numeric_limits<double>::quiet_NaN()), "\u2212\u221E");
}

TEST(ScalesGainText, ReadsZeroBelowHalfADecibelOnBothSides) {
    EXPECT_EQ(Scales::gainText(gainOf(0.49)), "0 dB");
    EXPECT_EQ(Scales::gainText(gainOf(-0.49)), "0 dB");
    EXPECT_EQ(Scales::gainText(gainOf(-0.51)), "\u22121 dB");
    EXPECT_EQ(Scales::gainText(gainOf(6.0)), "+6 dB");
    EXPECT_EQ(Scales::gainText(gainOf(-60.0)), "\u221260 dB");
}

TEST(ScalesDecibelText, RoundsAHalfToTheEvenNeighbour) {
    EXPECT_EQ(Scales::decibelText(2.5), "+2 dB");
    EXPECT_EQ(Scales::decibelText(-3.5), "\u22124 dB");
    EXPECT_EQ(Scales::decibelText(3.6), "+4 dB");
    EXPECT_EQ(Scales::decibelText(0.4), "0 dB");
}

TEST(ScalesFader, PutsUnityAtSixtySixtySixths) {
    EXPECT_NEAR(position(1.0), 60.0 / rangeDb, 1e-12);
}

TEST(ScalesFader, DrawsSilenceAtTheVeryLeftAndNothingElse) {
    EXPECT_EQ(position(0.0), 0.0);
    EXPECT_EQ(position(-0.5), 0.0);
    EXPECT_EQ(position(std::numeric_limits<double>::quiet_NaN()), 0.0);
    EXPECT_EQ(position(gainOf(-60.0)), 0.001);
    EXPECT_EQ(position(1e-9), 0.001);
}

TEST(ScalesFader, DrawsMoreThanItsRangeAtTheRight) {
    EXPECT_EQ(position(gainOf(6.0)), 1.0);
    EXPECT_EQ(position(100.0), 1.0);
}

TEST(ScalesFader, GivesExactSilenceInTheLeftmostThousandth) {
    EXPECT_EQ(gainAt(0.0), 0.0);
    EXPECT_EQ(gainAt(0.001), 0.0);
    EXPECT_NEAR(gainAt(0.0011), gainOf(-60.0 + 0.0011 * rangeDb), 1e-12);
}

TEST(ScalesFader, GivesTheGainOfEachPlace) {
    EXPECT_NEAR(gainAt(60.0 / rangeDb), 1.0, 1e-12);
    EXPECT_NEAR(gainAt(1.0), gainOf(6.0), 1e-12);
    for (const double db : {-59.0, -30.0, -6.0, 0.0, 3.5}) {
        EXPECT_NEAR(gainAt(position(gainOf(db))), gainOf(db), 1e-9) << db;
    }
}

TEST(ScalesTrack, FollowsThePointerWithTheThumbsMiddle) {
    EXPECT_EQ(Scales::trackPosition(8, 216, 16), 0.0);
    EXPECT_EQ(Scales::trackPosition(108, 216, 16), 0.5);
    EXPECT_EQ(Scales::trackPosition(208, 216, 16), 1.0);
    EXPECT_EQ(Scales::trackPosition(-40, 216, 16), 0.0);
    EXPECT_EQ(Scales::trackPosition(1000, 216, 16), 1.0);
}

TEST(ScalesTrack, StaysAtTheLeftWhereThereIsNoTravel) {
    EXPECT_EQ(Scales::trackPosition(10, 16, 16), 0.0);
    EXPECT_EQ(Scales::trackPosition(10, 0, 16), 0.0);
}

/// The position at which the slider's raw value is this.
double placeOf(double raw, double range) {
    return (raw + range) / (2 * range);
}

TEST(ScalesBipolar, RestsAtZeroWithinFourPercent) {
    for (const double sign : {-1.0, 1.0}) {
        EXPECT_EQ(Scales::bipolarValue(placeOf(sign * 0.47, 12), 12), 0.0);
        EXPECT_NEAR(Scales::bipolarValue(placeOf(sign * 0.49, 12), 12), sign * 0.49, 1e-9);
    }
}

TEST(ScalesBipolar, ReachesBothEnds) {
    EXPECT_EQ(Scales::bipolarValue(0.0, 12), -12.0);
    EXPECT_EQ(Scales::bipolarValue(0.5, 12), 0.0);
    EXPECT_EQ(Scales::bipolarValue(1.0, 12), 12.0);
}

TEST(ScalesBipolar, StandsWhereItsValueIs) {
    EXPECT_EQ(Scales::bipolarPosition(0, 1), 0.5);
    EXPECT_EQ(Scales::bipolarPosition(-1, 1), 0.0);
    EXPECT_EQ(Scales::bipolarPosition(6, 12), 0.75);
    EXPECT_EQ(Scales::bipolarPosition(99, 12), 1.0);
    EXPECT_EQ(Scales::bipolarPosition(-99, 12), 0.0);
}

TEST(ScalesStep, MovesWithinTheBounds) {
    EXPECT_EQ(Scales::stepped(3, 1, -12, 12), 4.0);
    EXPECT_EQ(Scales::stepped(11.5, 1, -12, 12), 12.0);
    EXPECT_EQ(Scales::stepped(-11.5, -1, -12, 12), -12.0);
    EXPECT_EQ(Scales::stepped(0, 0.01, -1, 1), 0.01) << "the detent is for dragging only";
}

TEST(ScalesStep, StopsAtZeroOnItsWayThrough) {
    EXPECT_EQ(Scales::stepped(-0.4, 1, -12, 12), 0.0);
    EXPECT_EQ(Scales::stepped(0.7, -1, -12, 12), 0.0);
    double value = -1.0;
    for (int tenths = 0; tenths < 10; ++tenths) {
        value = Scales::stepped(value, 0.1, -12, 12);
    }
    EXPECT_EQ(value, 0.0) << "ten steps of 0.1 make exactly 1";
}

TEST(ScalesMeter, IsEmptyAtAThousandthAndBelow) {
    EXPECT_EQ(Scales::meterFill(0.001), 0.0);
    EXPECT_EQ(Scales::meterFill(0.0), 0.0);
    EXPECT_EQ(Scales::meterFill(-1.0), 0.0);
    EXPECT_EQ(Scales::meterFill(std::numeric_limits<double>::quiet_NaN()), 0.0);
    EXPECT_GT(Scales::meterFill(0.0011), 0.0);
}

TEST(ScalesMeter, IsFullAtFullScaleAndAbove) {
    EXPECT_EQ(Scales::meterFill(1.0), 54.0);
    EXPECT_EQ(Scales::meterFill(3.0), 54.0);
}

TEST(ScalesMeter, FillsInDecibels) {
    EXPECT_NEAR(Scales::meterFill(0.1), 54.0 * 40 / 60, 1e-9);  // −20 dB
    EXPECT_NEAR(Scales::meterFill(0.01), 54.0 * 20 / 60, 1e-9); // −40 dB
}

} // namespace

} // namespace velmora
