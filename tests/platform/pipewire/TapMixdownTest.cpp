// What a tap hears of material and devices of different shapes.

#include "BackendTest.h"

#include "support/WavFile.h"

namespace velmora {
namespace {

using namespace support;

const SessionDevice surround8{.name = "test.surround",
                              .description = "Surround",
                              .mediaClass = "Audio/Sink",
                              .positions = {"FL", "FR", "FC", "LFE", "RL", "RR", "SL", "SR"},
                              .priority = 500};

/// Files of one tone per channel, played by `pw-play`.
class TapMixdown : public BackendTest {
protected:
    static void SetUpTestSuite() {
        BackendTest::SetUpTestSuite();
        session().add(surround8);
    }
    void TearDown() override {
        session().setDefaultSink(speakers.name);
        BackendTest::TearDown();
    }

    void useSurroundAsDefault() {
        session().setDefaultSink(surround8.name);
        ASSERT_TRUE(
            waitUntil([&] { return hardware().defaultOutputDevice() == find(surround8.name); }));
    }

    /// Level of a tone on either side of a tap on the player.
    void listenTo(const NativePlayer& player) {
        const HeardTap tap(hardware(), processOf(player.pid()), MuteBehavior::unmuted);
        ASSERT_EQ(tap.started(), statusOk);
        ASSERT_TRUE(waitUntil([&] { return tap.heard().isFull(); }));
        for (const std::size_t side : {0U, 1U}) {
            heard[side] = [&, side, all = sideOf(tap.heard().latest(2 * quarterSecond), side)](
                              double hz) { return toneDb(all, hz); };
        }
    }

    std::function<double(double hz)> heard[2];
};

TEST_F(TapMixdown, HearsMonoMaterialOnBothSides) {
    const NativePlayer player(session(), {.hz = {440}, .db = playedDb});

    listenTo(player);

    EXPECT_NEAR(heard[0](440), playedDb, tolerance);
    EXPECT_NEAR(heard[1](440), playedDb, tolerance);
}

TEST_F(TapMixdown, DividesByHalfTheDefaultOutputsChannels) {
    useSurroundAsDefault();
    const NativePlayer player(session(), {.hz = {440, 1000}, .db = playedDb});

    listenTo(player);

    const double quarter = playedDb + toDb(0.25); // 8 channels: divided by 4
    EXPECT_NEAR(heard[0](440), quarter, tolerance);
    EXPECT_NEAR(heard[1](1000), quarter, tolerance);
    EXPECT_LT(heard[0](1000), silentDb);
}

TEST_F(TapMixdown, HearsMonoMaterialOnBothSidesOfALargerOutput) {
    useSurroundAsDefault();
    const NativePlayer player(session(), {.hz = {440}, .db = playedDb});

    listenTo(player);

    const double quarter = playedDb + toDb(0.25);
    EXPECT_NEAR(heard[0](440), quarter, tolerance);
    EXPECT_NEAR(heard[1](440), quarter, tolerance);
}

TEST_F(TapMixdown, HearsSurroundMaterialFoldedIntoTwoSides) {
    useSurroundAsDefault();
    // FL FR FC LFE RL RR
    const NativePlayer player(session(), {.hz = {440, 500, 600, 700, 800, 900}, .db = playedDb});

    listenTo(player);

    const double quarter = playedDb + toDb(0.25);
    const double folded = quarter + toDb(std::numbers::sqrt2 / 2);
    EXPECT_NEAR(heard[0](440), quarter, tolerance);
    EXPECT_NEAR(heard[1](500), quarter, tolerance);
    EXPECT_NEAR(heard[0](600), folded, tolerance);
    EXPECT_NEAR(heard[1](600), folded, tolerance);
    EXPECT_NEAR(heard[0](800), folded, tolerance);
    EXPECT_NEAR(heard[1](900), folded, tolerance);
    EXPECT_LT(heard[0](700), silentDb);
}

} // namespace
} // namespace velmora
