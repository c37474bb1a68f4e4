#include "engine/realtime/OutputMix.h"

#include "platform/AudioUnits.h"
#include "support/CountedAllocations.h"
#include "support/NotNumbers.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <thread>

namespace velmora {
namespace {

static_assert(OutputMix::largestPart >= largestBlockFrames, "whole blocks stay whole");

class OutputMixTest : public testing::Test {
protected:
    std::shared_ptr<RingBuffer> addRing() {
        rings_.push_back(std::make_shared<RingBuffer>(192'000));
        box->set(rings_);
        return rings_.back();
    }

    /// A new ring that holds these frames.
    void play(const std::vector<float>& samples) {
        addRing()->write(samples.data(), static_cast<std::int64_t>(samples.size()));
    }

    /// Renders over something that must not show through.
    std::vector<std::vector<float>> render(std::int64_t frames, std::size_t channels = 2) {
        std::vector<std::vector<float>> buffers(
            channels, std::vector<float>(static_cast<std::size_t>(frames), -99.0F));
        std::vector<float*> pointers;
        for (auto& buffer : buffers) {
            pointers.push_back(buffer.data());
        }
        mix.render(frames, pointers);
        return buffers;
    }

    std::shared_ptr<RingSetBox> box = std::make_shared<RingSetBox>();
    std::shared_ptr<Limiter> limiter = std::make_shared<Limiter>();
    std::shared_ptr<ParamBox> volume = std::make_shared<ParamBox>(1.0F);
    OutputMix mix{box, limiter, volume};

private:
    RingSetBox::Rings rings_;
};

TEST_F(OutputMixTest, PlaysSilenceWithoutRingsWhileTheLimiterReturns) {
    limiter->gain = 0.5F;

    const auto channels = render(128);

    EXPECT_EQ(channels[0], std::vector<float>(128, 0.0F));
    EXPECT_EQ(channels[1], std::vector<float>(128, 0.0F));
    EXPECT_GT(limiter->gain, 0.5F);
}

TEST_F(OutputMixTest, SumsItsRingsWithUnitWeight) {
    play({0.25F, -0.125F});
    play({0.5F, 0.25F});

    const auto channels = render(1);

    EXPECT_EQ(channels[0][0], 0.75F);
    EXPECT_EQ(channels[1][0], 0.125F);
}

TEST_F(OutputMixTest, SumsInTheListsOrder) {
    play({1e8F, 0.0F});
    play({-1e8F, 0.0F});
    play({0.5F, 0.0F});

    // Any other order would round the half away.
    EXPECT_EQ(render(1)[0][0], 0.5F);
}

TEST_F(OutputMixTest, AppliesTheVolumeBeforeTheLimiter) {
    play({0.5F, -0.125F});
    volume->set(4.0F);

    const auto channels = render(1);

    EXPECT_FLOAT_EQ(channels[0][0], 0.8912509F);
    EXPECT_FLOAT_EQ(channels[1][0], -0.22281273F);
    EXPECT_FLOAT_EQ(limiter->gain, 0.44562545F);
}

TEST_F(OutputMixTest, IsSilentAtVolumeZeroWhileTheLimiterReturns) {
    play(std::vector<float>(256, 4.0F));
    volume->set(0.0F);
    limiter->gain = 0.5F;

    EXPECT_EQ(render(128)[0], std::vector<float>(128, 0.0F));
    EXPECT_GT(limiter->gain, 0.5F);
}

TEST_F(OutputMixTest, IsSilentAtAVolumeThatIsNoNumberAndRecovers) {
    play({0.5F, 0.25F, 0.5F, 0.25F, 0.5F, 0.25F});
    for (const float bad : {notANumber, infinity}) {
        volume->set(bad);
        EXPECT_EQ(render(1)[0][0], 0.0F);
    }

    volume->set(1.0F);

    EXPECT_EQ(render(1)[1][0], 0.25F);
}

TEST_F(OutputMixTest, TakesABadSampleOfOneRingAsZero) {
    play({notANumber, infinity, 0.5F, -infinity});
    play({0.25F, 0.25F, 0.25F, 0.25F});

    const auto channels = render(2);

    EXPECT_EQ(channels[0], (std::vector<float>{0.25F, 0.75F}));
    EXPECT_EQ(channels[1], (std::vector<float>{0.25F, 0.25F}));
    EXPECT_EQ(limiter->gain, 1.0F);
}

TEST_F(OutputMixTest, TakesASumThatOverflowsAsZero) {
    play({3e38F, 0.25F});
    play({3e38F, 0.25F});

    const auto channels = render(1);

    EXPECT_EQ(channels[0][0], 0.0F);
    EXPECT_EQ(channels[1][0], 0.5F);
}

TEST_F(OutputMixTest, GivesEveryChannelBeyondTheFirstTheRightSignal) {
    play({0.25F, 0.5F});

    const auto channels = render(1, 4);

    EXPECT_EQ(channels[0][0], 0.25F);
    for (const std::size_t c : {1U, 2U, 3U}) {
        EXPECT_EQ(channels[c][0], 0.5F);
    }
}

TEST_F(OutputMixTest, PlaysLeftIntoASingleChannel) {
    play({0.25F, 0.5F});

    EXPECT_EQ(render(1, 1)[0][0], 0.25F);
}

TEST_F(OutputMixTest, SkipsChannelsWithoutABuffer) {
    play({0.25F, 0.5F});
    float right = 0.0F;
    const std::array<float*, 3> channels{nullptr, &right, nullptr};

    mix.render(1, channels);

    EXPECT_EQ(right, 0.5F);
}

TEST_F(OutputMixTest, DrainsItsRingsWithoutChannels) {
    const auto ring = addRing();
    const std::vector<float> samples(512, 0.1F);
    ring->write(samples.data(), 512);

    mix.render(128, {});

    EXPECT_EQ(ring->availableToRead(), 256);
}

TEST_F(OutputMixTest, BoundsItsRingsEvenForNoFrames) {
    const auto ring = addRing();
    const std::vector<float> samples(5000, 0.1F);
    ring->write(samples.data(), 5000);

    mix.render(0, {});
    EXPECT_EQ(ring->availableToRead(), 2048);

    mix.render(-1, {});
    EXPECT_EQ(ring->availableToRead(), 2048);
}

TEST_F(OutputMixTest, SplitsARequestAboveItsLargestPart) {
    play(std::vector<float>(2000, 0.25F));
    const std::int64_t frames = 2 * OutputMix::largestPart + 100;

    const auto channels = render(frames);

    std::vector<float> expected(static_cast<std::size_t>(frames), 0.0F);
    std::fill_n(expected.begin(), 1000, 0.25F);
    EXPECT_EQ(channels[0], expected);
    EXPECT_EQ(channels[1], expected);
}

TEST_F(OutputMixTest, CarriesTheLimitersGainFromBlockToBlock) {
    const auto ring = addRing();
    std::vector<float> samples(800);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = 2.0F * std::sin(static_cast<float>(i));
    }
    Limiter whole;
    auto expected = samples;
    whole.process(expected);

    std::vector<float> left;
    for (std::size_t at = 0; at < samples.size(); at += 2 * 80) {
        ring->write(samples.data() + at, 2 * 80);
        const auto channels = render(80);
        left.insert(left.end(), channels[0].begin(), channels[0].end());
    }

    for (std::size_t frame = 0; frame < left.size(); ++frame) {
        ASSERT_EQ(left[frame], expected[2 * frame]) << frame;
    }
    EXPECT_EQ(limiter->gain, whole.gain);
}

TEST_F(OutputMixTest, RendersWithoutTheHeap) {
    for (int ring = 0; ring < 8; ++ring) {
        play(std::vector<float>(2048, 0.25F));
    }
    std::vector<float> left(20'000);
    std::vector<float> right(20'000);
    const std::array<float*, 2> channels{left.data(), right.data()};

    const std::size_t before = heapCallsOfThisThread();
    for (const std::int64_t frames : {128, 1024, 20'000}) {
        mix.render(frames, channels);
    }

    EXPECT_EQ(heapCallsOfThisThread() - before, 0U);
}

TEST_F(OutputMixTest, FreesNothingWhileItsRingsAreReplaced) {
    std::atomic<bool> done{false};
    std::size_t heapCalls = 0;
    {
        const std::jthread output([&] {
            std::array<float, 64> left{};
            const std::array<float*, 1> channels{left.data()};
            const std::size_t before = heapCallsOfThisThread();
            while (!done.load(std::memory_order_acquire)) {
                mix.render(64, channels);
            }
            heapCalls = heapCallsOfThisThread() - before;
        });
        for (int round = 0; round < 500; ++round) {
            RingSetBox::Rings rings;
            for (int ring = 0; ring < round % 20; ++ring) {
                rings.push_back(std::make_shared<RingBuffer>(64));
            }
            box->set(std::move(rings));
        }
        done.store(true, std::memory_order_release);
    }

    EXPECT_EQ(heapCalls, 0U);
}

} // namespace
} // namespace velmora
