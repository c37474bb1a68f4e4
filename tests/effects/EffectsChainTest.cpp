#include "effects/EffectsChain.h"

#include "effects/Signals.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace velmora {
namespace {

static_assert(!std::is_copy_constructible_v<EffectsChain>);

std::vector<float> through(EffectsChain& chain, std::vector<float> samples) {
    chain.process(samples.data(), static_cast<std::int64_t>(samples.size()));
    return samples;
}

std::vector<float> throughFresh(const FXParams& params, const std::vector<float>& samples) {
    EffectsChain chain(params);
    return through(chain, samples);
}

const std::vector<float> badBlock{notANumber, infinity, -infinity, 1e-45F, -0.0F, 3.4e38F};

TEST(EffectsChain, LeavesItsBlocksUntouchedByDefault) {
    EffectsChain chain;

    EXPECT_EQ(bitsOf(through(chain, badBlock)), bitsOf(badBlock));
}

TEST(EffectsChain, LeavesItsBlocksUntouchedWhileBypassed) {
    EffectsChain chain(everyEffect);
    chain.setBypass(true);

    EXPECT_EQ(bitsOf(through(chain, badBlock)), bitsOf(badBlock));
}

TEST(EffectsChain, TakesItsFirstParametersFromItsConstructor) {
    const auto tone = sine(1000, 440.0, 0.3);
    EffectsChain later;
    later.setParams(everyEffect);

    EXPECT_NE(throughFresh(everyEffect, tone), tone);
    EXPECT_EQ(through(later, tone), throughFresh(everyEffect, tone));
}

TEST(EffectsChain, RunsTheManualGainWhenAutomaticLevelIsOff) {
    const auto level = constant(48000, 0.1F);

    EXPECT_EQ(throughFresh({.autoGain = false}, level), level);
    EXPECT_NEAR(
        throughFresh({.autoGain = false, .manualDB = -6.0F}, level).back(), 0.0501F, 0.0001F);
}

TEST(EffectsChain, IgnoresBlocksOfLessThanAFrame) {
    EffectsChain chain(everyEffect);
    std::vector<float> one{0.5F};

    for (const std::int64_t count : {1, 0, -1, -100}) {
        chain.process(one.data(), count);
    }
    chain.process(nullptr, 0);

    EXPECT_EQ(one[0], 0.5F);
}

TEST(EffectsChain, LeavesAnOddLastFloatAlone) {
    EffectsChain chain({.autoGain = false, .manualDB = -60.0F});

    const auto samples = through(chain, std::vector<float>(5, 1.0F));

    EXPECT_NE(samples[3], 1.0F);
    EXPECT_EQ(samples[4], 1.0F);
}

TEST(EffectsChain, GoesOnUnchangedWhenTheSameParametersAreSetAgain) {
    const auto tone = sine(500, 440.0, 0.3);
    EffectsChain told(everyEffect);
    EffectsChain untold(everyEffect);
    through(told, tone);
    through(untold, tone);

    told.setParams(everyEffect);

    EXPECT_EQ(through(told, tone), through(untold, tone));
}

TEST(EffectsChain, GlidesOnWhenItIsRetuned) {
    FXParams manual{.autoGain = false, .manualDB = -60.0F};
    EffectsChain chain(manual);
    const float before = through(chain, constant(10000, 0.5F)).back();
    manual.tilt = 0.02F;

    chain.setParams(manual);

    // A reset would have set the gain back to 1.
    EXPECT_LT(through(chain, constant(1, 0.5F))[0], 2.0F * before);
}

TEST(EffectsChain, StartsAfreshWhenAnEffectIsSwitchedOnFromNeutral) {
    const auto tone = sine(500, 440.0, 0.3);
    EffectsChain chain(everyEffect);
    through(chain, tone);
    chain.setParams({});
    through(chain, tone);

    chain.setParams(everyEffect);

    EXPECT_EQ(through(chain, tone), throughFresh(everyEffect, tone));
}

TEST(EffectsChain, GoesOnWhereItWasWhenAStepThroughNeutralWasNeverSeen) {
    const auto tone = sine(500, 440.0, 0.3);
    EffectsChain chain(everyEffect);
    through(chain, tone);

    chain.setParams({});
    chain.setParams(everyEffect);

    EXPECT_NE(through(chain, tone), throughFresh(everyEffect, tone));
}

TEST(EffectsChain, StartsAfreshWhenItLeavesBypass) {
    const auto tone = sine(500, 440.0, 0.3);
    EffectsChain chain(everyEffect);
    through(chain, tone);
    chain.setBypass(true);
    EXPECT_EQ(through(chain, tone), tone);

    chain.setBypass(false);

    EXPECT_EQ(through(chain, tone), throughFresh(everyEffect, tone));
}

TEST(EffectsChain, StartsAfreshAtANewSampleRate) {
    const auto tone = sine(3000, 440.0, 0.3);
    EffectsChain moved(everyEffect);
    through(moved, tone);
    EffectsChain fresh(everyEffect);
    fresh.setSampleRate(44100.0);

    moved.setSampleRate(44100.0);

    EXPECT_EQ(through(moved, tone), through(fresh, tone));
}

TEST(EffectsChain, GoesOnUnchangedWhenTheSameRateIsSetAgain) {
    const auto tone = sine(500, 440.0, 0.3);
    EffectsChain told(everyEffect);
    EffectsChain untold(everyEffect);
    through(told, tone);
    through(untold, tone);

    told.setSampleRate(48000.0);

    EXPECT_EQ(through(told, tone), through(untold, tone));
}

TEST(EffectsChain, KeepsItsRateWhenItIsGivenNone) {
    const auto tone = sine(500, 440.0, 0.3);
    EffectsChain chain(everyEffect);
    for (const double rate : {0.0, -48000.0, 1e300, static_cast<double>(notANumber)}) {
        chain.setSampleRate(rate);
    }

    EXPECT_EQ(through(chain, tone), throughFresh(everyEffect, tone));
}

constexpr FXParams roomAndManualGain{.autoGain = false, .reverbMix = 1.0F};
constexpr FXParams manualGain{.autoGain = false};

/// An impulse, then enough silence for the shortest comb to be about to answer (1214 frames).
void excite(EffectsChain& chain) {
    auto samples = constant(1200, 0.0F);
    samples[0] = 1.0F;
    through(chain, samples);
}

TEST(EffectsChain, KeepsTheRoomsTailWhileAnotherEffectStaysOn) {
    EffectsChain chain(roomAndManualGain);
    excite(chain);

    chain.setParams(manualGain);
    EXPECT_EQ(through(chain, constant(50, 0.0F)), constant(50, 0.0F));
    chain.setParams(roomAndManualGain);

    EXPECT_EQ(through(chain, constant(50, 0.0F))[2 * 14], 0.25F * 0.6F);
}

TEST(EffectsChain, ClearsTheRoomWhenItIsTheOnlyEffectAndComesBack) {
    EffectsChain chain({.reverbMix = 1.0F});
    excite(chain);

    chain.setParams({});
    through(chain, constant(50, 0.0F));
    chain.setParams({.reverbMix = 1.0F});

    EXPECT_EQ(through(chain, constant(5000, 0.0F)), constant(5000, 0.0F));
}

TEST(EffectsChain, GivesSilenceForABadSampleAndRecoversOnTheNextFrame) {
    EffectsChain chain({.autoGain = false});
    const std::vector<float> samples{notANumber, infinity, 0.25F, 0.5F};

    EXPECT_EQ(through(chain, samples), (std::vector<float>{0.0F, 0.0F, 0.25F, 0.5F}));
}

TEST(EffectsChain, GivesFiniteSamplesForAnyInput) {
    std::mt19937 random(3);
    EffectsChain chain(everyEffect);
    for (int block = 0; block < 200; ++block) {
        EXPECT_TRUE(allFinite(through(chain, arbitraryBits(random, 256))));
    }
}

/// The level of a steady tone after a minute of it.
double levelAfterAMinute(EffectsChain& chain) {
    double level = 0.0;
    for (int second = 0; second < 60; ++second) {
        level = settledRms(through(chain, sine(48000, 440.0, 0.1)));
    }
    return level;
}

TEST(EffectsChain, SoundsAsIfNewSoonAfterABurstOfBadSamples) {
    std::mt19937 random(4);
    EffectsChain chain(everyEffect);
    for (int block = 0; block < 50; ++block) {
        auto burst = noise(random, 256, 1000.0F);
        for (float& sample : burst) {
            const auto kind = random() % 4;
            sample = kind == 0 ? notANumber : kind == 1 ? infinity : sample;
        }
        through(chain, burst);
    }

    EffectsChain fresh(everyEffect);
    EXPECT_NEAR(levelAfterAMinute(chain), levelAfterAMinute(fresh), 0.001);
}

TEST(EffectsChain, StaysFiniteWithParametersThatAreNoNumbers) {
    for (const float bad : {notANumber, infinity, -infinity, 1e38F}) {
        EffectsChain chain({.lowcut = std::numeric_limits<std::int64_t>::max(),
                            .tilt = bad,
                            .comp = std::numeric_limits<std::int64_t>::max(),
                            .autoGain = false,
                            .manualDB = bad,
                            .reverbChar = std::numeric_limits<std::int64_t>::min(),
                            .reverbMix = bad,
                            .plosive = true,
                            .denoise = true});
        EXPECT_TRUE(allFinite(through(chain, sine(1000, 440.0, 0.5)))) << bad;
    }
}

TEST(EffectsChain, IsHeardAgainAfterParametersThatAreNoNumbers) {
    EffectsChain chain({.tilt = infinity, .autoGain = false});
    through(chain, sine(1000, 440.0, 0.5));

    chain.setParams({.tilt = 0.5F, .autoGain = false});

    EXPECT_GT(rms(through(chain, sine(1000, 440.0, 0.5))), 0.2);
}

} // namespace
} // namespace velmora
