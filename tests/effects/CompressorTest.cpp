#include "effects/Compressor.h"

#include "effects/Signals.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

/// The gain in dB that a constant level settles at.
double settledGainDb(std::int64_t strength, float level) {
    Compressor compressor;
    compressor.retune({.comp = strength}, usualRate);
    auto samples = constant(48000, level);
    processEveryFrame(compressor, samples);
    return 20.0 * std::log10(static_cast<double>(samples.back() / level));
}

float db(double level) {
    return static_cast<float>(std::pow(10.0, level / 20.0));
}

TEST(Compressor, IsOffAtZeroAndBelow) {
    Compressor compressor;
    for (const std::int64_t strength : {0, -4}) {
        compressor.retune({.comp = strength}, usualRate);
        EXPECT_FALSE(compressor.isOn());
    }
}

TEST(Compressor, AppliesItsMakeUpGainFarBelowTheThreshold) {
    EXPECT_NEAR(settledGainDb(1, db(-60.0)), 3.0, 1e-4);
    EXPECT_NEAR(settledGainDb(2, db(-60.0)), 6.0, 1e-4);
    EXPECT_NEAR(settledGainDb(3, db(-60.0)), 9.0, 1e-4);
}

TEST(Compressor, ReducesByItsRatioAboveTheThreshold) {
    EXPECT_NEAR(settledGainDb(1, db(-8.0)), 3.0 - 10.0 * (1.0 - 1.0 / 2.0), 0.001);
    EXPECT_NEAR(settledGainDb(2, db(-12.0)), 6.0 - 12.0 * (1.0 - 1.0 / 3.0), 0.001);
    EXPECT_NEAR(settledGainDb(3, db(-10.0)), 9.0 - 20.0 * (1.0 - 1.0 / 4.0), 0.001);
}

TEST(Compressor, TakesEveryStrengthAboveThreeAsThree) {
    EXPECT_EQ(settledGainDb(9, 0.5F), settledGainDb(3, 0.5F));
}

TEST(Compressor, ReachesSixtyThreePercentOfAPeakAfterFiveMilliseconds) {
    Compressor compressor;
    compressor.retune({.comp = 1}, usualRate);
    auto samples = constant(240, 1.0F);

    processEveryFrame(compressor, samples);

    // The envelope is 1 - 1/e, 13.98 dB above the threshold of -18 dB; half of that goes.
    const double overDb = 20.0 * std::log10(1.0 - std::exp(-1.0)) + 18.0;
    EXPECT_NEAR(20.0 * std::log10(static_cast<double>(samples.back())), 3.0 - overDb / 2.0, 0.001);
}

TEST(Compressor, AppliesOneGainToBothChannels) {
    Compressor compressor;
    compressor.retune({.comp = 3}, usualRate);
    std::vector<float> samples(2 * 4800);
    for (std::size_t i = 0; i < samples.size(); i += 2) {
        samples[i] = 1.0F;
        samples[i + 1] = -0.25F;
    }

    processEveryFrame(compressor, samples);

    EXPECT_EQ(samples[samples.size() - 2] * -0.25F, samples.back());
}

TEST(Compressor, RecoversFromBadSamples) {
    Compressor compressor;
    compressor.retune({.comp = 1}, usualRate);
    std::vector<float> bad{infinity, 0.0F};
    processEveryFrame(compressor, bad);
    std::vector<float> worse{notANumber, 0.0F};
    processEveryFrame(compressor, worse);

    std::vector<float> samples{0.001F, 0.001F};
    processEveryFrame(compressor, samples);

    EXPECT_NEAR(20.0 * std::log10(static_cast<double>(samples[0] / 0.001F)), 3.0, 1e-4);
}

TEST(Compressor, ForgetsItsEnvelopeInAReset) {
    Compressor compressor;
    compressor.retune({.comp = 1}, usualRate);
    auto loud = constant(4800, 1.0F);
    processEveryFrame(compressor, loud);

    compressor.reset();

    std::vector<float> samples{0.01F, 0.01F};
    processEveryFrame(compressor, samples);
    EXPECT_NEAR(20.0 * std::log10(static_cast<double>(samples[0] / 0.01F)), 3.0, 1e-4);
}

} // namespace
} // namespace velmora
