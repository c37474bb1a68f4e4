#include "app/MeterGlyph.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace velmora {
namespace {

using testing::DoubleNear;
using testing::ElementsAre;
using testing::Pointwise;

constexpr double tolerance = 1e-6;

std::vector<double> heights(float level) {
    std::vector<double> result;
    for (const MeterBar& bar : meterBars(level)) {
        result.push_back(bar.height);
    }
    return result;
}

MATCHER(IsClose, "") {
    return std::fabs(std::get<0>(arg) - std::get<1>(arg)) < tolerance;
}

TEST(MeterGlyph, SilenceIsEighteenPercentOfEachBarButTwoPointsAtLeast) {
    // 15 x 0.18 x profile = 1.215, 2.025, 2.7, 2.025, 1.215
    const std::vector<double> silent{2.0, 2.025, 2.7, 2.025, 2.0};

    EXPECT_THAT(heights(0.0F), Pointwise(IsClose(), silent));
    EXPECT_THAT(heights(0.001F), Pointwise(IsClose(), silent));
    EXPECT_THAT(heights(-1.0F), Pointwise(IsClose(), silent));
}

TEST(MeterGlyph, FullScaleAndAboveAreFullBars) {
    const std::vector<double> full{6.75, 11.25, 15.0, 11.25, 6.75};

    EXPECT_THAT(heights(1.0F), Pointwise(IsClose(), full));
    EXPECT_THAT(heights(4.0F), Pointwise(IsClose(), full));
    EXPECT_THAT(heights(std::numeric_limits<float>::infinity()), Pointwise(IsClose(), full));
}

TEST(MeterGlyph, ATenthOfFullScaleIsTwoThirdsOfTheRange) {
    // -20 dB: norm = 40/60, scale = 0.18 + 0.82 x 2/3 = 0.72667
    const double scale = 0.18 + 0.82 * 2.0 / 3.0;
    const std::vector<double> expected{
        15 * 0.45 * scale, 15 * 0.75 * scale, 15 * scale, 15 * 0.75 * scale, 15 * 0.45 * scale};

    EXPECT_THAT(heights(0.1F), Pointwise(IsClose(), expected));
    EXPECT_NEAR(heights(0.1F)[2], 10.9, 0.01);
}

TEST(MeterGlyph, JustAboveSilenceItBeginsToGrow) {
    // 20 log10(0.002) + 60 = 6.0206 dB: scale = 0.18 + 0.82 x 0.100343
    EXPECT_NEAR(heights(0.002F)[2], 15 * (0.18 + 0.82 * 0.100343), 1e-4);
}

TEST(MeterGlyph, ANumberThatIsNoneShowsSilence) {
    EXPECT_EQ(heights(std::numeric_limits<float>::quiet_NaN()), heights(0.0F));
    EXPECT_EQ(meterStep(std::numeric_limits<float>::quiet_NaN()), 0);
}

TEST(MeterGlyph, BarsStandAtFixedPlacesCentredInTheGlyph) {
    for (const float level : {0.0F, 0.1F, 1.0F}) {
        std::vector<double> left;
        for (const MeterBar& bar : meterBars(level)) {
            left.push_back(bar.x);
            EXPECT_EQ(bar.width, 2.6);
            EXPECT_NEAR(bar.y, (15 - bar.height) / 2, tolerance);
        }
        EXPECT_THAT(left,
                    ElementsAre(DoubleNear(1.3, tolerance),
                                DoubleNear(5.5, tolerance),
                                DoubleNear(9.7, tolerance),
                                DoubleNear(13.9, tolerance),
                                DoubleNear(18.1, tolerance)));
    }
}

TEST(MeterGlyph, StepsCoverTheRangeEvenly) {
    EXPECT_EQ(meterStep(0.0F), 0);
    EXPECT_EQ(meterStep(0.001F), 0);
    EXPECT_EQ(meterStep(0.0316228F), 8); // -30 dB
    EXPECT_EQ(meterStep(1.0F), 16);
    EXPECT_EQ(meterStep(8.0F), 16);
}

TEST(MeterGlyph, EachStepsLevelIsShownByThatStep) {
    for (int step = 0; step <= meterSteps; ++step) {
        EXPECT_EQ(meterStep(levelOfStep(step)), step);
    }
}

} // namespace
} // namespace velmora
