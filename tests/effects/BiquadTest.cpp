#include "effects/Biquad.h"

#include "effects/Signals.h"

#include <gtest/gtest.h>

#include <complex>

namespace velmora {
namespace {

/// The magnitude of the section's transfer function, in dB.
double gainDbAt(const Biquad& section, double hz) {
    const auto z = std::polar(1.0, -2.0 * std::numbers::pi * hz / usualRate);
    const auto numerator = static_cast<double>(section.b0) + static_cast<double>(section.b1) * z +
                           static_cast<double>(section.b2) * z * z;
    const auto denominator =
        1.0 + static_cast<double>(section.a1) * z + static_cast<double>(section.a2) * z * z;
    return 20.0 * std::log10(std::abs(numerator / denominator));
}

TEST(Biquad, PassesItsInputUnchangedByDefault) {
    Biquad identity;

    for (const float sample : {0.0F, -0.25F, 1.0F, 3e38F, 1e-40F}) {
        EXPECT_EQ(identity.process(sample), sample);
    }
}

TEST(Biquad, SumsFromLeftToRightInSinglePrecision) {
    Biquad section{.b0 = 1.0F, .b1 = 1.0F, .b2 = 1.0F};
    section.process(1e8F);
    section.process(-1e8F);

    // (1 - 1e8) + 1e8: the first sum has rounded the 1 away.
    EXPECT_EQ(section.process(1.0F), 0.0F);
}

TEST(Biquad, HighPassPassesTheMiddleAndRemovesRumble) {
    const Biquad lowCut = Biquad::highPass(75.0, usualRate);

    EXPECT_NEAR(gainDbAt(lowCut, 1000.0), 0.0, 0.01);
    EXPECT_NEAR(gainDbAt(lowCut, 75.0), -3.01, 0.02);
    EXPECT_LT(gainDbAt(lowCut, 20.0), -22.0);
}

TEST(Biquad, LowPassPassesTheLowsAndRemovesTheHighs) {
    const Biquad split = Biquad::lowPass(400.0, usualRate);

    EXPECT_NEAR(gainDbAt(split, 20.0), 0.0, 0.01);
    EXPECT_NEAR(gainDbAt(split, 400.0), -3.01, 0.02);
    EXPECT_LT(gainDbAt(split, 4000.0), -39.0);
}

TEST(Biquad, LowShelfMovesOnlyTheLows) {
    const Biquad shelf = Biquad::lowShelf(250.0, -4.5, usualRate);

    EXPECT_NEAR(gainDbAt(shelf, 10.0), -4.5, 0.02);
    EXPECT_NEAR(gainDbAt(shelf, 250.0), -2.25, 0.02);
    EXPECT_NEAR(gainDbAt(shelf, 10000.0), 0.0, 0.02);
}

TEST(Biquad, HighShelfMovesOnlyTheHighs) {
    const Biquad shelf = Biquad::highShelf(3500.0, 4.5, usualRate);

    EXPECT_NEAR(gainDbAt(shelf, 50.0), 0.0, 0.02);
    EXPECT_NEAR(gainDbAt(shelf, 3500.0), 2.25, 0.02);
    EXPECT_NEAR(gainDbAt(shelf, 20000.0), 4.5, 0.1);
}

TEST(Biquad, UsesTheRoundedDivisorInItsPasses) {
    const double w = 471.23889803846896 / usualRate;
    const double alpha = std::sin(w) / 1.414;

    const Biquad lowCut = Biquad::highPass(75.0, usualRate);

    EXPECT_EQ(lowCut.a2, static_cast<float>((1.0 - alpha) / (1.0 + alpha)));
    EXPECT_EQ(lowCut.b0, static_cast<float>((1.0 + std::cos(w)) / 2.0 / (1.0 + alpha)));
    EXPECT_EQ(lowCut.b2, lowCut.b0);
}

TEST(Biquad, IsSilentForThreeSamplesAfterAnInfiniteOneAndThenFiltersAgain) {
    Biquad section = Biquad::highPass(75.0, usualRate);

    EXPECT_EQ(section.process(infinity), 0.0F);
    EXPECT_EQ(section.process(0.5F), 0.0F);
    EXPECT_EQ(section.process(0.5F), 0.0F);
    // Two inputs of 0.5 in the history, no output yet.
    const float expected = section.b0 * 0.5F + section.b1 * 0.5F + section.b2 * 0.5F;
    EXPECT_EQ(section.process(0.5F), expected);
}

TEST(Biquad, NeverLetsABadResultIntoItsFeedback) {
    Biquad section = Biquad::lowPass(120.0, usualRate);
    section.process(notANumber);

    EXPECT_EQ(section.y1, 0.0F);
    EXPECT_TRUE(std::isnan(section.x1));
}

} // namespace
} // namespace velmora
