#include "effects/Tilt.h"

#include "effects/Signals.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

/// The gain of a tilt at one frequency, in dB.
double gainDb(float amount, double hz) {
    Tilt tilt;
    tilt.retune({.tilt = amount}, usualRate);
    auto samples = sine(48000, hz, 0.5);
    const double before = settledRms(samples);
    processEveryFrame(tilt, samples);
    return 20.0 * std::log10(settledRms(samples) / before);
}

TEST(Tilt, StaysOffUpToOneHundredth) {
    Tilt tilt;
    for (const float amount : {0.0F, 0.005F, 0.01F, -0.01F, notANumber}) {
        tilt.retune({.tilt = amount}, usualRate);
        EXPECT_FALSE(tilt.isOn()) << amount;
    }
}

TEST(Tilt, MovesByAboutFiveHundredthsOfADbJustAboveItsThreshold) {
    Tilt tilt;
    tilt.retune({.tilt = 0.011F}, usualRate);

    EXPECT_TRUE(tilt.isOn());
    EXPECT_NEAR(gainDb(0.011F, 20.0), -0.0495, 0.005);
    EXPECT_NEAR(gainDb(0.011F, 18000.0), 0.0495, 0.005);
}

TEST(Tilt, RaisesTheHighsAndLowersTheLowsAtFullTilt) {
    EXPECT_NEAR(gainDb(1.0F, 20.0), -4.5, 0.1);
    EXPECT_NEAR(gainDb(1.0F, 18000.0), 4.5, 0.1);
}

TEST(Tilt, DoesTheOppositeWhenNegative) {
    EXPECT_NEAR(gainDb(-1.0F, 20.0), 4.5, 0.1);
    EXPECT_NEAR(gainDb(-1.0F, 18000.0), -4.5, 0.1);
}

TEST(Tilt, GoesOffEntirelyAtZero) {
    Tilt tilt;
    tilt.retune({.tilt = 0.5F}, usualRate);

    tilt.retune({.tilt = 0.0F}, usualRate);

    EXPECT_FALSE(tilt.isOn());
}

TEST(Tilt, KeepsItsHistoryWhenRetuned) {
    Tilt glided;
    glided.retune({.tilt = 0.5F}, usualRate);
    auto before = constant(100, 0.5F);
    processEveryFrame(glided, before);
    glided.retune({.tilt = 0.6F}, usualRate);
    Tilt fresh;
    fresh.retune({.tilt = 0.6F}, usualRate);

    std::vector<float> glidedFrame{0.5F, 0.5F};
    std::vector<float> freshFrame{0.5F, 0.5F};
    processEveryFrame(glided, glidedFrame);
    processEveryFrame(fresh, freshFrame);

    EXPECT_LT(std::abs(glidedFrame[0] - before.back()), 0.1F);
    EXPECT_NE(glidedFrame, freshFrame);
}

} // namespace
} // namespace velmora
