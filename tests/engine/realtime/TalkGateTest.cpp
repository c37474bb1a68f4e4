#include "engine/realtime/TalkGate.h"

#include "support/CountedAllocations.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace velmora {
namespace {

constexpr double rateHz = 48000.0;
constexpr std::int64_t fadeFrames = 384; // 8 ms at that rate

float gainAt(std::int64_t position) {
    const float x = static_cast<float>(position) / static_cast<float>(fadeFrames);
    return x * x * (3.0F - 2.0F * x);
}

/// What becomes of a stereo signal of 0.5 left and -0.25 right, in blocks of this many frames.
class Played {
public:
    Played(TalkGate& gate, std::int64_t frames, std::int64_t block)
        : left(static_cast<std::size_t>(frames), 0.5F),
          right(static_cast<std::size_t>(frames), -0.25F) {
        for (std::int64_t first = 0; first < frames; first += block) {
            const std::array<float*, 3> channels{
                left.data() + first, nullptr, right.data() + first};
            gate.process(std::min(block, frames - first), channels);
        }
    }

    std::vector<float> left;
    std::vector<float> right;
};

class TalkGateTest : public testing::TestWithParam<std::int64_t> {
protected:
    TalkGateTest() { gate.begin(rateHz); }

    Played play(std::int64_t frames) { return {gate, frames, GetParam()}; }

    TalkGate gate;
};

TEST_P(TalkGateTest, TouchesNothingWhileItIsOpen) {
    const Played played = play(1000);

    EXPECT_EQ(played.left, std::vector<float>(1000, 0.5F));
    EXPECT_EQ(played.right, std::vector<float>(1000, -0.25F));
}

TEST_P(TalkGateTest, FadesOutSampleBySampleAndIsThenSilent) {
    gate.setOpen(false);

    const Played played = play(1000);

    for (std::int64_t frame = 0; frame < 1000; ++frame) {
        const float gain = gainAt(std::max<std::int64_t>(0, fadeFrames - 1 - frame));
        ASSERT_EQ(played.left[static_cast<std::size_t>(frame)], 0.5F * gain) << frame;
        ASSERT_EQ(played.right[static_cast<std::size_t>(frame)], -0.25F * gain) << frame;
    }
}

TEST_P(TalkGateTest, FadesInSampleBySampleAndIsThenUntouched) {
    gate.setOpen(false);
    play(1000);
    gate.setOpen(true);

    const Played played = play(1000);

    for (std::int64_t frame = 0; frame < 1000; ++frame) {
        const float gain = gainAt(std::min(fadeFrames, frame + 1));
        ASSERT_EQ(played.left[static_cast<std::size_t>(frame)], 0.5F * gain) << frame;
    }
}

TEST_P(TalkGateTest, TurnsBackFromWhereItIs) {
    gate.setOpen(false);
    play(100);
    gate.setOpen(true);

    const Played played = play(200);

    for (std::int64_t frame = 0; frame < 200; ++frame) {
        const float gain = gainAt(std::min(fadeFrames, fadeFrames - 100 + frame + 1));
        ASSERT_EQ(played.left[static_cast<std::size_t>(frame)], 0.5F * gain) << frame;
    }
}

INSTANTIATE_TEST_SUITE_P(Blocks, TalkGateTest, testing::Values(1, 64, 128, 1000));

TEST(TalkGate, BeginsClosedWithoutAFade) {
    TalkGate gate;
    gate.setOpen(false);
    gate.begin(rateHz);

    EXPECT_EQ(Played(gate, 64, 64).left, std::vector<float>(64, 0.0F));
}

TEST(TalkGate, NeverStepsByMoreThanAFadesSteepestPart) {
    TalkGate gate;
    gate.begin(rateHz);
    gate.setOpen(false);

    const auto heard = Played(gate, 1000, 128).left;

    const float steepest = 0.5F * 1.5F / fadeFrames; // the slope at its middle
    float before = 0.5F;
    for (const float sample : heard) {
        EXPECT_LE(before - sample, steepest * 1.01F);
        before = sample;
    }
}

TEST(TalkGate, FadesForEightMillisecondsAtAnyRate) {
    TalkGate gate;
    gate.begin(96000.0);
    gate.setOpen(false);

    const auto heard = Played(gate, 1000, 1000).left;

    EXPECT_NE(heard[766], 0.0F);
    EXPECT_EQ(heard[767], 0.0F);
}

TEST(TalkGate, UsesNoHeap) {
    TalkGate gate;
    gate.begin(rateHz);
    std::vector<float> samples(512, 0.5F);
    const std::array<float*, 1> channels{samples.data()};
    const auto before = heapCallsOfThisThread();

    gate.setOpen(false);
    gate.process(512, channels);
    gate.setOpen(true);
    gate.process(512, channels);

    EXPECT_EQ(heapCallsOfThisThread(), before);
}

} // namespace
} // namespace velmora
