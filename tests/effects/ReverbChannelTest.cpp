#include "effects/ReverbChannel.h"

#include "effects/Signals.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

constexpr float feedback = 0.75F;
constexpr float damp = 0.45F;

/// What a channel answers to one sample of 1 and silence after it.
std::vector<float> impulseResponse(ReverbChannel& channel, std::size_t length) {
    std::vector<float> response(length);
    response[0] = channel.process(1.0F, feedback, damp);
    for (std::size_t i = 1; i < length; ++i) {
        response[i] = channel.process(0.0F, feedback, damp);
    }
    return response;
}

std::size_t firstSound(const std::vector<float>& response) {
    const auto found = std::ranges::find_if(response, [](float sample) { return sample != 0.0F; });
    return static_cast<std::size_t>(found - response.begin());
}

TEST(ReverbChannel, IsSilentBeforeItIsConfigured) {
    ReverbChannel channel;

    EXPECT_EQ(impulseResponse(channel, 4000), std::vector<float>(4000, 0.0F));
}

TEST(ReverbChannel, AnswersFirstAfterItsShortestComb) {
    ReverbChannel channel;
    channel.configure(44100.0, 0);

    const auto response = impulseResponse(channel, 2000);

    EXPECT_EQ(firstSound(response), 1116U);
    EXPECT_EQ(response[1116], 0.25F); // a quarter of the sum of the combs, through both allpasses
}

/// Finds each line's length in the answer of a channel at 44.1 kHz.
void expectLines(std::int64_t offset,
                 std::array<std::size_t, 4> combs,
                 std::array<std::size_t, 2> allpasses) {
    ReverbChannel channel;
    channel.configure(44100.0, offset);

    const auto response = impulseResponse(channel, 2000);

    EXPECT_EQ(firstSound(response), combs[0]);
    for (const std::size_t comb : combs) {
        EXPECT_EQ(response[comb], 0.25F) << comb;
    }
    // One comb's impulse through an allpass: out -a at once, then +a after the delay, twice over.
    for (const std::size_t allpass : allpasses) {
        EXPECT_EQ(response[combs[0] + allpass], -0.25F) << allpass;
    }
}

TEST(ReverbChannel, DelaysByItsBaseLengthsAt44100Hz) {
    expectLines(0, {1116, 1188, 1277, 1356}, {556, 441});
}

TEST(ReverbChannel, IsLongerByTheStereoSpreadInEveryLine) {
    expectLines(23, {1139, 1211, 1300, 1379}, {579, 464});
}

TEST(ReverbChannel, ScalesItsLinesWithTheRateAndRoundsDown) {
    ReverbChannel channel;
    channel.configure(48000.0, 0);

    const auto response = impulseResponse(channel, 2000);

    for (const std::size_t comb : {1214U, 1293U, 1389U, 1475U}) {
        EXPECT_EQ(response[comb], 0.25F) << comb;
    }
    EXPECT_EQ(firstSound(response), 1214U);
}

TEST(ReverbChannel, KeepsLinesOfEightSamplesAtAbsurdlyLowRates) {
    ReverbChannel channel;
    channel.configure(1.0, 0);

    EXPECT_EQ(firstSound(impulseResponse(channel, 100)), 8U);
}

TEST(ReverbChannel, DampsAndFeedsBackEachComb) {
    ReverbChannel channel;
    channel.configure(1.0, 0); // every line 8 long, so that the four combs agree

    const auto response = impulseResponse(channel, 17);

    // Combs: 1 at 8, 0.75 · 0.55 at 16. Allpasses of 8: 1 at 8; at 16 the second echo, and -1
    // twice.
    EXPECT_EQ(response[8], 1.0F);
    EXPECT_FLOAT_EQ(response[16], 0.75F * 0.55F - 2.0F);
}

TEST(ReverbChannel, IsSilentAfterAClearAndKeepsItsPositions) {
    ReverbChannel used;
    used.configure(44100.0, 0);
    (void)impulseResponse(used, 3000);

    used.clear();

    ReverbChannel fresh;
    fresh.configure(44100.0, 0);
    EXPECT_EQ(impulseResponse(used, 6000), impulseResponse(fresh, 6000));
}

TEST(ReverbChannel, StartsAfreshWhenConfiguredAgain) {
    ReverbChannel channel;
    channel.configure(44100.0, 0);
    (void)impulseResponse(channel, 3000);

    channel.configure(96000.0, 0);

    EXPECT_EQ(firstSound(impulseResponse(channel, 4000)), 2429U); // 1116 · 96000 / 44100
}

TEST(ReverbChannel, RecoversFromBadSamples) {
    ReverbChannel channel;
    channel.configure(1.0, 0);
    ReverbChannel silent;
    silent.configure(1.0, 0);
    for (const float bad : {infinity, notANumber, -infinity}) {
        (void)channel.process(bad, feedback, damp);
        (void)silent.process(0.0F, feedback, damp);
    }

    // No echo of them is left: the lines took 0 instead.
    EXPECT_EQ(impulseResponse(channel, 200), impulseResponse(silent, 200));
}

TEST(ReverbChannelDeathTest, RefusesARateThatGivesNoLength) {
    ReverbChannel channel;

    EXPECT_DEATH(channel.configure(static_cast<double>(notANumber), 0), "");
    EXPECT_DEATH(channel.configure(48000.0, std::numeric_limits<std::int64_t>::max()), "");
}

} // namespace
} // namespace velmora
