#include "effects/LevelStage.h"

#include "effects/Signals.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

LevelStage tuned(const FXParams& params, double sampleRate = usualRate) {
    LevelStage stage;
    stage.retune(params, sampleRate);
    return stage;
}

/// The gain after some seconds of a sine of the given RMS.
double gainAfter(LevelStage& stage, double seconds, double level) {
    const auto tone = sine(48000, 1000.0, level * std::numbers::sqrt2);
    double gain = 0.0;
    for (int second = 0; second < static_cast<int>(seconds); ++second) {
        auto samples = tone;
        processEveryFrame(stage, samples);
        gain = settledRms(samples) / settledRms(tone);
    }
    return gain;
}

constexpr FXParams automatic{};

// Tolerances: near its aim the automatic gain stands still, once a step of 14 millionths of what is
// missing no longer changes a float.

TEST(LevelStage, HoldsItsGainInSilence) {
    auto stage = tuned(automatic);
    auto silence = constant(96000, 0.0F);
    processEveryFrame(stage, silence);

    std::vector<float> samples{0.0001F, 0.0001F};
    processEveryFrame(stage, samples);

    EXPECT_EQ(samples, (std::vector<float>{0.0001F, 0.0001F}));
}

TEST(LevelStage, RaisesAQuietSineByNoMoreThan18dB) {
    auto stage = tuned(automatic);

    EXPECT_NEAR(gainAfter(stage, 20.0, 0.01259), 8.0, 0.02);
}

TEST(LevelStage, LowersALoudSineByNoMoreThan12dB) {
    auto stage = tuned(automatic);

    EXPECT_NEAR(gainAfter(stage, 20.0, 1.0), 0.25, 0.002);
}

TEST(LevelStage, AimsAtMinus18dBInBetween) {
    auto stage = tuned(automatic);

    EXPECT_NEAR(gainAfter(stage, 20.0, 0.05), 0.1259 / 0.05, 0.01);
}

TEST(LevelStage, GlidesToAManualGainWithinTwoThousandFramesAtAnyRate) {
    for (const double sampleRate : {44100.0, 96000.0}) {
        auto stage = tuned({.autoGain = false, .manualDB = 6.0F}, sampleRate);
        auto samples = constant(2000, 0.1F);

        processEveryFrame(stage, samples);

        // 1 - (1 - 0.0005)^2000 = 63.2 % of the way from 1 to 1.9953.
        EXPECT_NEAR(samples.back() / 0.1F, 1.0F + 0.632F * 0.9953F, 0.001F);
    }
}

TEST(LevelStage, ApproachesTheManualGain) {
    auto stage = tuned({.autoGain = false, .manualDB = -6.0F});
    auto samples = constant(48000, 0.1F);

    processEveryFrame(stage, samples);

    EXPECT_NEAR(samples.back() / 0.1F, 0.5012F, 0.0001F);
}

TEST(LevelStage, StaysAtOneWithAManualGainOfZeroDb) {
    auto stage = tuned({.autoGain = false});
    auto samples = constant(1000, 0.3F);

    processEveryFrame(stage, samples);

    EXPECT_EQ(samples, constant(1000, 0.3F));
}

TEST(LevelStage, KeepsItsGainWhenItTurnsManual) {
    auto stage = tuned(automatic);
    (void)gainAfter(stage, 20.0, 1.0);

    stage.retune({.autoGain = false}, usualRate);

    std::vector<float> samples{0.5F, 0.5F};
    processEveryFrame(stage, samples);
    EXPECT_NEAR(samples[0] / 0.5F, 0.25F, 0.002F);
}

TEST(LevelStage, RecoversFromBadSamples) {
    auto stage = tuned(automatic);
    auto bad = std::vector<float>{notANumber, 0.0F, infinity, 0.0F, 3e38F, 3e38F};
    processEveryFrame(stage, bad);

    EXPECT_NEAR(gainAfter(stage, 20.0, 0.05), 0.1259 / 0.05, 0.01);
}

TEST(LevelStage, ReturnsToOneWhenTheManualGainIsNoNumber) {
    for (const float manualDb : {notANumber, infinity, 1e9F}) {
        auto stage = tuned({.autoGain = false, .manualDB = manualDb});
        auto samples = constant(100, 0.3F);

        processEveryFrame(stage, samples);

        EXPECT_EQ(samples, constant(100, 0.3F)) << manualDb;
    }
}

TEST(LevelStage, StartsAfreshAfterAReset) {
    auto stage = tuned(automatic);
    (void)gainAfter(stage, 5.0, 1.0);

    stage.reset();

    std::vector<float> samples{0.001F, 0.001F};
    processEveryFrame(stage, samples);
    EXPECT_EQ(samples, (std::vector<float>{0.001F, 0.001F}));
}

} // namespace
} // namespace velmora
