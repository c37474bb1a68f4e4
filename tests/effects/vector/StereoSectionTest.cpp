#include "effects/vector/StereoSection.h"

#include "effects/Signals.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

const Biquad design = Biquad::lowShelf(250.0, -4.5, 48000.0);

StereoSection tunedSection() {
    StereoSection section;
    section.retune(design);
    return section;
}

Quad quadOf(std::vector<float> samples) {
    samples.resize(quadSamples);
    return loadQuad(samples.data());
}

std::vector<float> samplesOf(const Quad& quad) {
    std::vector<float> samples(quadSamples);
    storeQuad(samples.data(), quad);
    return samples;
}

TEST(StereoSection, PassesItsInputUnchangedByDefault) {
    const std::vector<float> samples{0.25F, -1.0F, 1e-40F, 3e38F, 0.0F, 2.0F, -3.0F, 4.0F};

    EXPECT_EQ(samplesOf(StereoSection().process<Check::everyFrame>(quadOf(samples), 4)), samples);
}

TEST(StereoSection, BehavesAsOneSectionForEachChannelAtAnyNumberOfFrames) {
    std::mt19937 random(1);
    StereoSection section = tunedSection();
    Biquad left = design;
    Biquad right = design;
    for (int i = 0; i < 3000; ++i) {
        const std::size_t frames = 1 + random() % quadFrames;
        // Every fiftieth input is any 32 bits at all.
        auto samples = i % 50 == 0 ? arbitraryBits(random, frames) : noise(random, frames, 1.0F);
        const auto y = samplesOf(section.process<Check::everyFrame>(quadOf(samples), frames));
        for (std::size_t frame = 0; frame < frames; ++frame) {
            ASSERT_EQ(y[2 * frame], left.process(samples[2 * frame]));
            ASSERT_EQ(y[2 * frame + 1], right.process(samples[2 * frame + 1]));
        }
    }
}

TEST(StereoSection, KeepsItsHistoryWhenRetunedAndForgetsItWhenCleared) {
    const Biquad delay{.b0 = 0.0F, .b1 = 1.0F}; // gives the sample before
    StereoSection retuned = tunedSection();
    (void)retuned.process<Check::everyFrame>(quadOf(std::vector(quadSamples, 0.5F)), 4);
    StereoSection cleared = retuned;

    retuned.retune(delay);
    cleared.retune(delay);
    cleared.clearHistory();

    EXPECT_EQ(samplesOf(retuned.process<Check::everyFrame>(quadOf({}), 4)).front(), 0.5F);
    EXPECT_EQ(samplesOf(cleared.process<Check::everyFrame>(quadOf({}), 4)).front(), 0.0F);
}

TEST(StereoSection, KeepsABadFeedbackUntilTheEndWhenUnchecked) {
    StereoSection section = tunedSection();
    (void)section.process<Check::atTheEnd>(quadOf({notANumber}), 4);
    for (int i = 0; i < 1000; ++i) {
        (void)section.process<Check::atTheEnd>(quadOf(std::vector(quadSamples, 0.1F)), 4);
    }

    EXPECT_FALSE(section.isFinite());
}

} // namespace
} // namespace velmora
