#include "effects/vector/BiquadLanes.h"

#include "effects/Signals.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

BiquadLanes tuned() {
    BiquadLanes sections;
    sections.retune(0, Biquad::lowPass(400.0, usualRate));
    sections.retune(1, Biquad::highPass(3000.0, usualRate));
    return sections;
}

TEST(BiquadLanes, PassTheirInputUnchangedByDefault) {
    BiquadLanes sections;

    const Lanes y = sections.process<Check::everyFrame>(Lanes{0.25F, -1.0F, 1e-40F, 3e38F});

    EXPECT_EQ(y[0], 0.25F);
    EXPECT_EQ(y[1], -1.0F);
    EXPECT_EQ(y[2], 1e-40F);
    EXPECT_EQ(y[3], 3e38F);
}

TEST(BiquadLanes, BehaveAsFourSections) {
    std::mt19937 random(1);
    BiquadLanes sections = tuned();
    std::array<Biquad, 4> plain{Biquad::lowPass(400.0, usualRate),
                                Biquad::lowPass(400.0, usualRate),
                                Biquad::highPass(3000.0, usualRate),
                                Biquad::highPass(3000.0, usualRate)};
    for (int i = 0; i < 5000; ++i) {
        // Every hundredth input is any 32 bits at all.
        const auto samples = i % 100 == 0 ? arbitraryBits(random, 2) : noise(random, 2, 1.0F);
        const Lanes y = sections.process<Check::everyFrame>(loadLanes(samples.data()));
        for (std::size_t lane = 0; lane < 4; ++lane) {
            ASSERT_EQ(y[lane], plain[lane].process(samples[lane]));
        }
    }
}

TEST(BiquadLanes, KeepTheirHistoryWhenRetuned) {
    BiquadLanes glided = tuned();
    glided.process<Check::everyFrame>(allLanes(0.5F));
    BiquadLanes fresh;

    glided.retune(0, Biquad{.b0 = 0.0F, .b1 = 1.0F});
    fresh.retune(0, Biquad{.b0 = 0.0F, .b1 = 1.0F});

    EXPECT_EQ(glided.process<Check::everyFrame>(zeroLanes)[0], 0.5F);
    EXPECT_EQ(fresh.process<Check::everyFrame>(zeroLanes)[0], 0.0F);
}

TEST(BiquadLanes, ForgetTheirHistoryWhenCleared) {
    BiquadLanes sections = tuned();
    sections.process<Check::everyFrame>(allLanes(0.5F));

    sections.clearHistory();

    EXPECT_EQ(sections.process<Check::everyFrame>(zeroLanes)[0], 0.0F);
}

TEST(BiquadLanes, KeepABadFeedbackUntilTheEndWhenUnchecked) {
    BiquadLanes sections = tuned();
    sections.process<Check::atTheEnd>(Lanes{notANumber, 0.0F, 0.0F, 0.0F});
    for (int i = 0; i < 1000; ++i) {
        sections.process<Check::atTheEnd>(allLanes(0.1F));
    }

    EXPECT_FALSE(sections.isFinite());
}

} // namespace
} // namespace velmora
