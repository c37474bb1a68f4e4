#include "support/ToneAnalysis.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace velmora::support {
namespace {

constexpr std::size_t second = 48000;

std::vector<float> oneTone(double hz, double db, double seconds = 1) {
    return makeTone({.hz = {hz}, .db = db}, seconds).samples;
}

TEST(ToneAnalysis, FindsAToneAtItsLevel) {
    EXPECT_NEAR(toneDb(oneTone(440, -20), 440), -20.0, 0.001);
}

TEST(ToneAnalysis, FindsHalfTheAmplitudeSixDecibelsLower) {
    auto samples = oneTone(1000, 0);
    std::ranges::transform(samples, samples.begin(), [](float x) { return x / 2; });

    EXPECT_NEAR(toneDb(samples, 1000), -6.0206, 0.001);
}

TEST(ToneAnalysis, IsNotDisturbedByALouderToneElsewhere) {
    auto samples = oneTone(440, -40, 0.25);
    const auto loud = oneTone(554, 0, 0.25);
    std::ranges::transform(samples, loud, samples.begin(), std::plus{});

    EXPECT_NEAR(toneDb(samples, 440), -40.0, 0.05);
}

TEST(ToneAnalysis, FindsNothingInSilence) {
    EXPECT_EQ(toneDb(std::vector<float>(second), 440), -200.0);
    EXPECT_EQ(toneDb({}, 440), -200.0);
}

TEST(ToneAnalysis, GivesEachChannelItsOwnTone) {
    const Sound sound = makeTone({.hz = {440, 550}, .db = -6}, 0.5);

    EXPECT_EQ(sound.frames(), second / 2);
    EXPECT_NEAR(toneDb(sound.channel(0), 440), -6.0, 0.001);
    EXPECT_LT(toneDb(sound.channel(0), 550), -90.0);
    EXPECT_NEAR(toneDb(sound.channel(1), 550), -6.0, 0.001);
}

TEST(ToneBreaks, AnUnbrokenToneHasNone) {
    auto samples = oneTone(440, -30, 2);
    const auto other = oneTone(1000, -10, 2);
    std::ranges::transform(samples, other, samples.begin(), std::plus{});

    EXPECT_EQ(countBreaks(samples, 440), 0);
}

TEST(ToneBreaks, ALostBlockIsOne) {
    auto samples = oneTone(440, -20, 2);
    samples.erase(samples.begin() + 30000, samples.begin() + 30128);

    EXPECT_EQ(countBreaks(samples, 440), 1);
}

TEST(ToneBreaks, ASilentBlockIsOne) {
    auto samples = oneTone(440, -20, 2);
    std::fill_n(samples.begin() + 30000, 128, 0.0F);

    EXPECT_EQ(countBreaks(samples, 440), 1);
}

TEST(ToneBreaks, BlocksLostFarApartCountEach) {
    auto samples = oneTone(1000, -20, 3);
    for (const std::size_t at : {20000, 60000, 100000}) {
        std::fill_n(samples.begin() + static_cast<std::ptrdiff_t>(at), 128, 0.0F);
    }

    EXPECT_EQ(countBreaks(samples, 1000), 3);
}

} // namespace
} // namespace velmora::support
