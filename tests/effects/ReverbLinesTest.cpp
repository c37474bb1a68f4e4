#include "effects/ReverbLines.h"

#include "effects/Available.h"
#include "effects/Signals.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

constexpr ReverbTone tone{.feedback = 0.84F, .damp = 0.25F};

class ReverbLinesTest : public testing::TestWithParam<Instructions> {};

TEST_P(ReverbLinesTest, GiveTheSameForRowsAsSampleBySample) {
    std::mt19937 random(2);
    for (const double rate : {1.0, 400.0, 44100.0}) {
        ReverbLines rows;
        ReverbLines single;
        rows.configure(rate);
        single.configure(rate);
        for (int round = 0; round < 300; ++round) {
            const std::size_t samples = 1 + random() % 100;
            auto left =
                round % 20 == 0 ? arbitraryBits(random, samples) : noise(random, samples, 1);
            auto right =
                round % 30 == 0 ? arbitraryBits(random, samples) : noise(random, samples, 1);
            auto expectedLeft = left;
            auto expectedRight = right;
            for (float& sample : expectedLeft) {
                sample = single.left.process(sample, tone.feedback, tone.damp);
            }
            for (float& sample : expectedRight) {
                sample = single.right.process(sample, tone.feedback, tone.damp);
            }
            rows.process(left, right, tone, GetParam());
            ASSERT_EQ(bitsOf(left), bitsOf(expectedLeft));
            ASSERT_EQ(bitsOf(right), bitsOf(expectedRight));
        }
    }
}

TEST_P(ReverbLinesTest, StayExactWhenFiniteSamplesAddUpToInfinity) {
    ReverbLines rows;
    ReverbLines single;
    rows.configure(44100.0);
    single.configure(44100.0);
    for (int round = 0; round < 40; ++round) {
        auto left = std::vector(128, 3e38F); // two of them are too many
        auto right = left;
        auto expected = left;
        for (float& sample : expected) {
            sample = single.left.process(sample, tone.feedback, tone.damp);
        }
        rows.process(left, right, tone, GetParam());
        ASSERT_EQ(bitsOf(left), bitsOf(expected));
    }
}

TEST_P(ReverbLinesTest, GiveSilenceBeforeTheyAreConfigured) {
    ReverbLines lines;
    std::vector<float> left(10, 0.5F);
    std::vector<float> right(10, 0.5F);

    lines.process(left, right, tone, GetParam());

    EXPECT_EQ(left, std::vector<float>(10, 0.0F));
    EXPECT_EQ(right, std::vector<float>(10, 0.0F));
}

INSTANTIATE_TEST_SUITE_P(EveryInstructionSet,
                         ReverbLinesTest,
                         testing::ValuesIn(availableInstructions()),
                         nameOfInstructions);

} // namespace
} // namespace velmora
