#include "effects/PlosiveGuard.h"

#include "effects/Signals.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

std::vector<float> guarded(std::vector<float> samples) {
    PlosiveGuard guard;
    guard.retune({.plosive = true}, usualRate);
    processEveryFrame(guard, samples);
    return samples;
}

double rmsOf(const std::vector<float>& samples, std::size_t fromFrame, std::size_t frames) {
    return rms(std::span(samples).subspan(2 * fromFrame, 2 * frames));
}

TEST(PlosiveGuard, DucksASuddenBurstOfLowEnergy) {
    const auto softened = guarded(constant(4800, 0.8F));

    // After 30 ms the low band has arrived in whole, and its gain in a quarter. The average
    // passes 1 / 1.1 only after 33 ms: (1 - 0.0015)^1600 = 0.09.
    EXPECT_NEAR(softened[2 * 1440], 0.25F * 0.8F, 0.005F);
}

TEST(PlosiveGuard, NeverTurnsLowEnergyDownByMoreThan12dB) {
    const auto burst = sine(4800, 30.0, 0.8);

    const auto softened = guarded(burst);

    EXPECT_GT(rmsOf(softened, 0, 4800), 0.25 * rmsOf(burst, 0, 4800));
}

TEST(PlosiveGuard, LeavesSteadyContentAloneOnceTheAverageHasCaughtUp) {
    const auto passed = guarded(constant(96000, 0.5F));

    EXPECT_NEAR(passed.back(), 0.5F, 0.001F);
}

TEST(PlosiveGuard, LeavesABurstOfHighsAlone) {
    const auto highs = sine(4800, 5000.0, 0.8);

    const auto passed = guarded(highs);

    EXPECT_NEAR(rmsOf(passed, 0, 4800), rmsOf(highs, 0, 4800), 1e-4);
}

TEST(PlosiveGuard, LeavesAQuietBurstAlone) {
    const auto quiet = sine(4800, 60.0, 0.02);

    const auto passed = guarded(quiet);

    for (std::size_t i = 0; i < quiet.size(); ++i) {
        EXPECT_NEAR(passed[i], quiet[i], 1e-8F);
    }
}

TEST(PlosiveGuard, PassesSilence) {
    EXPECT_EQ(guarded(constant(480, 0.0F)), constant(480, 0.0F));
}

TEST(PlosiveGuard, RecoversFromBadSamples) {
    PlosiveGuard guard;
    guard.retune({.plosive = true}, usualRate);
    auto bad = std::vector<float>{notANumber, 0.0F, infinity, -infinity, 0.5F, notANumber};
    processEveryFrame(guard, bad);

    auto samples = sine(96000, 1000.0, 0.5);
    const auto expected = samples;
    processEveryFrame(guard, samples);

    EXPECT_TRUE(allFinite(std::span(samples).subspan(2 * 3))); // the filter's history is over
    EXPECT_NEAR(settledRms(samples), settledRms(expected), 0.001);
}

TEST(PlosiveGuard, StartsAfreshAfterAReset) {
    PlosiveGuard guard;
    guard.retune({.plosive = true}, usualRate);
    auto before = sine(4800, 60.0, 0.8);
    processEveryFrame(guard, before);

    guard.reset();

    auto samples = sine(4800, 60.0, 0.8);
    processEveryFrame(guard, samples);
    EXPECT_EQ(samples, guarded(sine(4800, 60.0, 0.8)));
}

TEST(PlosiveGuard, GoesOnFromItsStateAfterAPause) {
    PlosiveGuard guard;
    guard.retune({.plosive = true}, usualRate);
    auto before = sine(4800, 60.0, 0.8);
    processEveryFrame(guard, before);

    guard.retune({.plosive = false}, usualRate);
    guard.retune({.plosive = true}, usualRate);

    auto samples = sine(4800, 60.0, 0.8);
    processEveryFrame(guard, samples);
    EXPECT_NE(samples, guarded(sine(4800, 60.0, 0.8)));
}

} // namespace
} // namespace velmora
