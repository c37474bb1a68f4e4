#include "effects/LowCut.h"

#include "effects/Signals.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

std::vector<float> throughLowCut(std::int64_t step, std::vector<float> samples) {
    LowCut lowCut;
    lowCut.retune({.lowcut = step}, usualRate);
    processEveryFrame(lowCut, samples);
    return samples;
}

TEST(LowCut, IsOffAtStepZeroAndBelow) {
    LowCut lowCut;
    for (const std::int64_t step : {0, -1}) {
        lowCut.retune({.lowcut = step}, usualRate);
        EXPECT_FALSE(lowCut.isOn());
    }
}

TEST(LowCut, Removes20HzAndPasses1kHz) {
    const double sineRms = 0.5 / std::numbers::sqrt2;

    EXPECT_NEAR(settledRms(throughLowCut(1, sine(48000, 1000.0, 0.5))), sineRms, 0.001);
    EXPECT_LT(settledRms(throughLowCut(1, sine(48000, 20.0, 0.5))), 0.08 * sineRms);
}

TEST(LowCut, HasItsCornerAt75HzInStepOneAnd150HzInEveryLargerOne) {
    const double halfPower = 0.5 / std::numbers::sqrt2 / std::numbers::sqrt2;

    EXPECT_NEAR(settledRms(throughLowCut(1, sine(48000, 75.0, 0.5))), halfPower, 0.001);
    EXPECT_NEAR(settledRms(throughLowCut(2, sine(48000, 150.0, 0.5))), halfPower, 0.001);
    EXPECT_EQ(throughLowCut(2, sine(480, 99.0, 0.5)), throughLowCut(7, sine(480, 99.0, 0.5)));
}

TEST(LowCut, KeepsLeftAndRightApart) {
    std::vector<float> samples{1.0F, 0.0F, 1.0F, 0.0F, 1.0F, 0.0F};

    samples = throughLowCut(1, samples);

    EXPECT_NE(samples[4], 0.0F);
    for (const std::size_t right : {1U, 3U, 5U}) {
        EXPECT_EQ(samples[right], 0.0F);
    }
}

TEST(LowCut, ForgetsItsHistoryInAReset) {
    LowCut used;
    used.retune({.lowcut = 1}, usualRate);
    auto before = sine(100, 50.0, 0.5);
    processEveryFrame(used, before);

    used.reset();

    auto samples = sine(100, 80.0, 0.5);
    processEveryFrame(used, samples);
    EXPECT_EQ(samples, throughLowCut(1, sine(100, 80.0, 0.5)));
}

} // namespace
} // namespace velmora
