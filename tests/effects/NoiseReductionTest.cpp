#include "effects/NoiseReduction.h"

#include "effects/Signals.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

NoiseReduction tuned() {
    NoiseReduction reduction;
    reduction.retune({.denoise = true}, usualRate);
    return reduction;
}

/// Feeds blocks of 1024 frames without end, from where the last call stopped.
class Feed {
public:
    explicit Feed(NoiseReduction& reduction) : reduction_(reduction) {}

    /// Runs a low tone for a while; returns the gain over the last block.
    double run(double seconds, double amplitude) {
        double gain = 0.0;
        for (int block = 0; block < static_cast<int>(seconds * usualRate / 1024.0); ++block) {
            auto samples = constant(1024, static_cast<float>(amplitude));
            processEveryFrame(reduction_, samples);
            gain = rms(samples) / amplitude;
        }
        return gain;
    }

private:
    NoiseReduction& reduction_;
};

TEST(NoiseReduction, SettlesAtTheSquareLawOnAConstantLevel) {
    auto reduction = tuned();

    // The floor rises to the envelope, r = 1 / 2.5, and the gain becomes r squared. The last half
    // percent is lost to rounding: a step of five millionths of it no longer changes the floor.
    EXPECT_NEAR(Feed(reduction).run(60.0, 0.1), 0.16, 0.003);
}

TEST(NoiseReduction, OpensFullyAboveTwoAndAHalfTimesTheFloor) {
    auto reduction = tuned();
    Feed feed(reduction);
    feed.run(60.0, 0.1);

    // The floor has hardly moved after 0.1 s, and the gain opens within milliseconds.
    EXPECT_NEAR(feed.run(0.1, 0.27), 1.0, 0.001);
}

TEST(NoiseReduction, NeverReducesBelowItsLowestGain) {
    auto reduction = tuned();
    Feed feed(reduction);
    feed.run(60.0, 0.1);

    // The floor falls at once with the envelope, so that r never stays far below 0.4.
    EXPECT_GT(feed.run(1.0, 0.00001), 0.12 * 0.99);
}

TEST(NoiseReduction, PassesWhatItIsGivenWhileItsGainsAreOne) {
    auto reduction = tuned();
    auto samples = sine(64, 1000.0, 0.5);
    const auto expected = samples;

    processEveryFrame(reduction, samples);

    // The three bands sum back to the input.
    for (std::size_t i = 0; i < samples.size(); ++i) {
        EXPECT_NEAR(samples[i], expected[i], 0.07F);
    }
}

TEST(NoiseReduction, PassesSilence) {
    auto reduction = tuned();
    auto samples = constant(48000, 0.0F);

    processEveryFrame(reduction, samples);

    EXPECT_EQ(samples, constant(48000, 0.0F));
}

TEST(NoiseReduction, RecoversFromBadSamples) {
    auto reduction = tuned();
    auto bad = std::vector<float>{notANumber, 0.0F, infinity, -infinity, 0.5F, notANumber};
    processEveryFrame(reduction, bad);

    EXPECT_NEAR(Feed(reduction).run(60.0, 0.1), 0.16, 0.003);
}

TEST(NoiseReduction, StartsAfreshAfterAReset) {
    auto used = tuned();
    Feed(used).run(1.0, 0.3);

    used.reset();

    auto fresh = tuned();
    auto fromUsed = sine(1000, 440.0, 0.1);
    auto fromFresh = fromUsed;
    processEveryFrame(used, fromUsed);
    processEveryFrame(fresh, fromFresh);
    EXPECT_EQ(fromUsed, fromFresh);
}

} // namespace
} // namespace velmora
