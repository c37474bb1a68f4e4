#include "engine/realtime/Limiter.h"

#include "support/NotNumbers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <vector>

namespace velmora {
namespace {

TEST(Limiter, StartsAtMinusOneDbFullGainAnd80Milliseconds) {
    const Limiter limiter;

    EXPECT_NEAR(limiter.ceiling, std::pow(10.0, -1.0 / 20.0), 1e-7);
    EXPECT_NEAR(limiter.releaseCoeff, std::exp(-1.0 / (48000.0 * 0.08)), 1e-7);
    EXPECT_EQ(limiter.gain, 1.0F);
}

TEST(Limiter, ReducesAnOverAtOnceAndBothChannelsAlike) {
    Limiter limiter;
    std::array<float, 2> frame{2.0F, -0.5F};

    limiter.process(frame);

    EXPECT_FLOAT_EQ(limiter.gain, 0.44562545F);
    EXPECT_FLOAT_EQ(frame[0], 0.8912509F);
    EXPECT_FLOAT_EQ(frame[1], -0.22281273F);
}

TEST(Limiter, LeavesWhatIsBelowTheCeilingUntouched) {
    Limiter limiter;
    std::vector<float> samples{0.89F, -0.89F, 0.0F, 0.5F};
    const auto before = samples;

    limiter.process(samples);

    EXPECT_EQ(samples, before);
    EXPECT_EQ(limiter.gain, 1.0F);
}

TEST(Limiter, ReturnsBy63PercentIn80Milliseconds) {
    Limiter limiter;
    limiter.gain = 0.5F;
    std::vector<float> silence(2 * 3840);

    limiter.process(silence);

    EXPECT_NEAR(limiter.gain, 1.0 - 0.5 * std::exp(-1.0), 1e-4);
}

TEST(Limiter, ReturnsOnAFrameWhoseReducedPeakIsBelowTheCeiling) {
    Limiter limiter;
    limiter.gain = 0.5F;
    std::array<float, 2> frame{1.5F, 0.0F}; // 0.75 after the gain in force

    limiter.process(frame);

    EXPECT_FLOAT_EQ(limiter.gain, 1.0F + 0.99973965F * (0.5F - 1.0F));
    EXPECT_FLOAT_EQ(frame[0], 1.5F * limiter.gain);
}

TEST(Limiter, SetsItsReleaseForARate) {
    Limiter limiter;

    limiter.setSampleRate(96000.0);

    EXPECT_FLOAT_EQ(limiter.releaseCoeff, static_cast<float>(std::exp(-1.0 / 7680.0)));
}

TEST(Limiter, SetsItsInitialReleaseFor48kHz) {
    Limiter limiter;

    limiter.setSampleRate(48000.0);

    EXPECT_EQ(limiter.releaseCoeff, Limiter{}.releaseCoeff);
}

TEST(Limiter, RecoversFromAGainThatIsNoNumber) {
    for (const float bad : {notANumber, infinity, -infinity}) {
        Limiter limiter;
        limiter.gain = bad;
        std::array<float, 2> frame{0.25F, 0.5F};

        limiter.process(frame);

        EXPECT_EQ(frame, (std::array<float, 2>{0.25F, 0.5F}));
        EXPECT_EQ(limiter.gain, 1.0F);
    }
}

TEST(Limiter, ReturnsAtOnceWithAReleaseThatIsNone) {
    for (const float bad : {notANumber, infinity, -1.0F, 1.5F}) {
        Limiter limiter{.releaseCoeff = bad, .gain = 0.5F};
        std::vector<float> samples{0.25F, 0.5F, 0.25F, 0.5F};

        limiter.process(samples);

        EXPECT_EQ(samples, (std::vector<float>{0.25F, 0.5F, 0.25F, 0.5F}));
    }
}

/// One frame after the other, as plainly as it can be said.
void limitPlainly(Limiter& limiter, std::vector<float>& samples) {
    for (std::size_t i = 0; i < samples.size(); i += 2) {
        float p = std::fabs(samples[i]);
        if (std::fabs(samples[i + 1]) > p) {
            p = std::fabs(samples[i + 1]);
        }
        float target = 1.0F;
        if (limiter.gain * p > limiter.ceiling) {
            target = limiter.ceiling / (p > 1e-9F ? p : 1e-9F);
        }
        if (limiter.gain > target) {
            limiter.gain = target;
        } else {
            limiter.gain = target + limiter.releaseCoeff * (limiter.gain - target);
        }
        samples[i] = samples[i] * limiter.gain;
        samples[i + 1] = samples[i + 1] * limiter.gain;
    }
}

TEST(Limiter, EqualsItsFormulaBitForBitAndHardlyPassesItsCeiling) {
    std::mt19937 random(1);
    Limiter limiter;
    Limiter plain;
    for (int block = 0; block < 500; ++block) {
        const auto amplitude = std::array{0.0F, 0.1F, 0.8F, 1.0F, 4.0F}[random() % 5];
        std::uniform_real_distribution<float> uniform(-amplitude, amplitude);
        std::vector<float> samples(2 * (random() % 300));
        std::ranges::generate(samples, [&] { return uniform(random); });
        auto expected = samples;

        limiter.process(samples);
        limitPlainly(plain, expected);

        ASSERT_EQ(samples, expected);
        ASSERT_EQ(limiter.gain, plain.gain);
        for (const float sample : samples) {
            ASSERT_LT(std::abs(sample), 0.8912509F * 1.01F);
        }
    }
}

TEST(Limiter, PassesItsCeilingByLessThanATenthOfADecibelUpToPeaks32DbAboveFullScale) {
    // A frame that the gain in force g just suffices for lets the gain rise by (1 - k)(1 - g):
    // relative to g = 0.891 / 40 that is 0.00026 * 44 = 1.1 %, or 0.099 dB.
    constexpr float peak = 40.0F;
    Limiter limiter;
    std::vector<float> samples(2 * 48000, peak);

    limiter.process(samples);

    EXPECT_LT(*std::ranges::max_element(samples), limiter.ceiling * std::pow(10.0F, 0.1F / 20.0F));
    EXPECT_GT(*std::ranges::max_element(samples), limiter.ceiling * std::pow(10.0F, 0.09F / 20.0F));
}

TEST(Limiter, EqualsItsFormulaBitForBitOnceItsGainHasComeToRest) {
    Limiter limiter{.gain = 0.9F};
    Limiter plain = limiter;
    std::vector<float> samples(2 * 100'000, 0.1F);
    auto expected = samples;
    limiter.process(samples);
    limitPlainly(plain, expected);
    ASSERT_LT(limiter.gain, 1.0F); // it rests just below

    for (const float level : {0.5F, 0.8912F, 0.8914F, 0.1F}) {
        samples.assign(2 * 64, level);
        expected = samples;
        limiter.process(samples);
        limitPlainly(plain, expected);
        EXPECT_EQ(samples, expected) << level;
        EXPECT_EQ(limiter.gain, plain.gain) << level;
    }
}

} // namespace
} // namespace velmora
