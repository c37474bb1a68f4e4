#include "platform/pipewire/node/FadeIn.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace velmora::pipewire {
namespace {

/// A constant 1, faded in by blocks of so many frames.
std::vector<float> fadedOnes(std::size_t blockFrames, std::size_t frames) {
    const std::vector<float> ones(blockFrames, 1.0F);
    FadeIn fade;
    std::vector<float> out;
    while (out.size() < frames) {
        const float* const block = fade.next(ones);
        out.insert(out.end(), block, block + blockFrames);
    }
    return out;
}

TEST(FadeIn, RisesFromSilenceToTheSignalItself) {
    const auto risen = fadedOnes(64, 512);

    EXPECT_EQ(risen[0], 0.0F);
    EXPECT_FLOAT_EQ(risen[128], 0.5F); // 3/4 − 2/8
    EXPECT_EQ(risen[256], 1.0F);
    EXPECT_EQ(risen[511], 1.0F);
    EXPECT_TRUE(std::ranges::is_sorted(risen));
}

TEST(FadeIn, HasNoEdge) {
    const auto risen = fadedOnes(64, 512);

    for (std::size_t at = 2; at < risen.size(); ++at) {
        // The second derivative of 3t² − 2t³ is at most 6 / 256².
        EXPECT_LE(std::abs(risen[at] - 2 * risen[at - 1] + risen[at - 2]), 1e-4F) << at;
    }
}

TEST(FadeIn, IsTheSameForAnyBlockSize) {
    EXPECT_EQ(fadedOnes(1, 512), fadedOnes(256, 512));
}

TEST(FadeIn, BeginsWithTheFirstSound) {
    FadeIn fade;
    const std::vector<float> silence(FadeIn::frames);
    const std::vector<float> ones(FadeIn::frames, 1.0F);
    static_cast<void>(fade.next(silence));
    EXPECT_FALSE(fade.isOver());

    const float* const risen = fade.next(ones);

    EXPECT_EQ(risen[0], 0.0F);
    EXPECT_FLOAT_EQ(risen[128], 0.5F);
}

TEST(FadeIn, IsOverOnceTheSignalHasRisenAndBeginsAgainWhenTold) {
    FadeIn fade;
    const std::vector<float> ones(FadeIn::frames, 1.0F);
    EXPECT_FALSE(fade.isOver());
    static_cast<void>(fade.next(ones));
    EXPECT_TRUE(fade.isOver());

    fade.restart();

    EXPECT_FALSE(fade.isOver());
    EXPECT_EQ(fade.next(ones)[0], 0.0F);
}

} // namespace
} // namespace velmora::pipewire
