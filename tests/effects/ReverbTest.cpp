#include "effects/Reverb.h"

#include "effects/Signals.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

constexpr double rate = 44100.0;

/// A reverb that was just switched on.
struct Room {
    explicit Room(const FXParams& params) { reverb.retune(params, rate); }

    /// The answer to one frame of 1 and silence after it.
    std::vector<float> impulse(std::size_t frames = 4000) {
        auto samples = constant(frames, 0.0F);
        samples[0] = samples[1] = 1.0F;
        reverb.process(samples);
        return samples;
    }

    Reverb reverb;
};

TEST(Reverb, IsOffUpToFiveThousandths) {
    Reverb reverb;
    for (const float mix : {0.0F, 0.005F, -1.0F, notANumber}) {
        reverb.retune({.reverbMix = mix}, rate);
        EXPECT_FALSE(reverb.isOn()) << mix;
    }
    reverb.retune({.reverbMix = 0.0051F}, rate);
    EXPECT_TRUE(reverb.isOn());
}

TEST(Reverb, KeepsTheDrySignalAndAddsTheRoomAtSixTenths) {
    const auto samples = Room({.reverbMix = 1.0F}).impulse();

    EXPECT_EQ(samples[0], 1.0F);
    EXPECT_EQ(samples[2 * 1116], 0.25F * 0.6F);
}

TEST(Reverb, TakesAMixAboveOneAsOne) {
    EXPECT_EQ(Room({.reverbMix = 1.5F}).impulse(), Room({.reverbMix = 1.0F}).impulse());
}

TEST(Reverb, SpreadsTheRightChannelBy23Samples) {
    const auto samples = Room({.reverbMix = 1.0F}).impulse();

    EXPECT_EQ(samples[2 * 1116 + 1], 0.0F);
    EXPECT_EQ(samples[2 * 1139 + 1], 0.25F * 0.6F);
}

TEST(Reverb, FeedsEachChannelByItselfAlone) {
    Room room({.reverbMix = 1.0F});
    auto samples = constant(4000, 0.0F);
    samples[0] = 1.0F;

    room.reverb.process(samples);

    for (std::size_t right = 1; right < samples.size(); right += 2) {
        EXPECT_EQ(samples[right], 0.0F);
    }
}

TEST(Reverb, ClampsItsCharacter) {
    EXPECT_EQ(Room({.reverbChar = 7, .reverbMix = 1.0F}).impulse(),
              Room({.reverbChar = 2, .reverbMix = 1.0F}).impulse());
    EXPECT_EQ(Room({.reverbChar = -3, .reverbMix = 1.0F}).impulse(),
              Room({.reverbChar = 0, .reverbMix = 1.0F}).impulse());
}

TEST(Reverb, EchoesByTheFeedbackAndDampingOfItsCharacter) {
    const std::array<float, 3> secondEcho{0.75F * 0.55F, 0.84F * 0.75F, 0.92F * 0.5F};
    for (std::int64_t character = 0; character < 3; ++character) {
        Room room({.reverbChar = character, .reverbMix = 1.0F});
        room.reverb.retune({.reverbChar = character, .reverbMix = 1.0F}, 1.0);

        const auto samples = room.impulse(17);

        // All lines are 8 long at this rate: combs, and -1 from each allpass.
        const float expected = secondEcho[static_cast<std::size_t>(character)] - 2.0F;
        EXPECT_NEAR(samples[2 * 16], expected * 0.6F, 1e-6F) << character;
    }
}

TEST(Reverb, KeepsItsTailWhenSwitchedOffAndOnAtTheSameRate) {
    Room room({.reverbMix = 1.0F});
    (void)room.impulse(1000);

    room.reverb.retune({.reverbMix = 0.0F}, rate);
    room.reverb.retune({.reverbMix = 1.0F}, rate);

    auto samples = constant(200, 0.0F);
    room.reverb.process(samples);
    EXPECT_EQ(samples[2 * 116], 0.25F * 0.6F);
}

TEST(Reverb, BuildsSilentLinesWhenTheRateChangesWhileItIsOn) {
    Room room({.reverbMix = 1.0F});
    (void)room.impulse(1000);

    room.reverb.retune({.reverbMix = 1.0F}, 88200.0);

    const auto samples = room.impulse();
    EXPECT_EQ(samples[2 * 116], 0.0F);
    EXPECT_EQ(samples[2 * 2232], 0.25F * 0.6F);
}

TEST(Reverb, KeepsItsLinesWhenTheRateChangesWhileItIsOff) {
    Room room({.reverbMix = 1.0F});

    room.reverb.retune({.reverbMix = 0.0F}, 88200.0);
    room.reverb.retune({.reverbMix = 1.0F}, 88200.0);

    EXPECT_EQ(room.impulse()[2 * 1116], 0.25F * 0.6F);
}

TEST(Reverb, IsSilentAfterAReset) {
    Room room({.reverbMix = 1.0F});
    (void)room.impulse(3000);

    room.reverb.reset();

    auto samples = constant(5000, 0.0F);
    room.reverb.process(samples);
    EXPECT_EQ(samples, constant(5000, 0.0F));
}

TEST(Reverb, RunsAtRatesAboveTheReservedOne) {
    Room room({.reverbMix = 1.0F});
    room.reverb.reserveFor(441000.0);

    room.reverb.retune({.reverbMix = 1.0F}, 441000.0);

    EXPECT_EQ(room.impulse(12000)[2 * 11160], 0.25F * 0.6F);
}

} // namespace
} // namespace velmora
