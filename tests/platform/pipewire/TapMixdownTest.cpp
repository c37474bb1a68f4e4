// What a tap hears of material and devices of different shapes.

#include "BackendTest.h"

namespace velmora {
namespace {

using namespace support;

/// The session manager makes it the default by its priority.
const SessionDevice surround8{.name = "test.surround",
                              .description = "Surround",
                              .mediaClass = "Audio/Sink",
                              .positions = {"FL", "FR", "FC", "LFE", "RL", "RR", "SL", "SR"},
                              .priority = 5000};

/// Listens to `pw-play`, which plays one tone per channel of its material.
class TapMixdown : public BackendTest {
protected:
    void TearDown() override {
        tap.reset();
        BackendTest::TearDown();
    }

    void listenTo(const NativePlayer& player, float divisor = 1.0F) {
        constexpr std::size_t longEnough = 480000; // 10 s; the players take a moment to settle
        tap = std::make_unique<HeardTap>(
            taps(), processOf(player.pid()), ApplicationTaps::Mute::no, longEnough, divisor);
        ASSERT_TRUE(tap->isAlive());
    }
    bool hears(std::size_t side, double hz, double db) const {
        return waitUntil([&] { return std::abs(tap->db(side, hz) - db) < tolerance; });
    }
    bool isSilentAt(std::size_t side, double hz) const {
        return waitUntil([&] { return tap->db(side, hz) < silentDb; });
    }

    std::unique_ptr<HeardTap> tap;
};

TEST_F(TapMixdown, HearsMonoMaterialOnBothSides) {
    const NativePlayer player(session(), {.hz = {440}, .db = playedDb});

    listenTo(player);

    EXPECT_TRUE(hears(0, 440, playedDb));
    EXPECT_TRUE(hears(1, 440, playedDb));
}

class SurroundTapMixdown : public TapMixdown {
protected:
    static void SetUpTestSuite() {
        BackendTest::SetUpTestSuite();
        session().add(surround8);
        EXPECT_TRUE(waitUntil([] { return session().graph().defaultSink() == surround8.name; }));
    }
};

TEST_F(SurroundTapMixdown, DividesAsItIsAskedToWhateverTheDefaultOutput) {
    const NativePlayer player(session(), {.hz = {440, 1000}, .db = playedDb});

    listenTo(player, 4.0F);

    const double quarter = playedDb + toDb(0.25);
    EXPECT_TRUE(hears(0, 440, quarter));
    EXPECT_TRUE(hears(1, 1000, quarter));
    EXPECT_TRUE(isSilentAt(0, 1000));
}

TEST_F(SurroundTapMixdown, HearsMonoMaterialOnBothSidesOfALargerOutput) {
    const NativePlayer player(session(), {.hz = {440}, .db = playedDb});

    listenTo(player, 4.0F);

    const double quarter = playedDb + toDb(0.25);
    EXPECT_TRUE(hears(0, 440, quarter));
    EXPECT_TRUE(hears(1, 440, quarter));
}

TEST_F(SurroundTapMixdown, HearsSurroundMaterialFoldedIntoTwoSides) {
    // FL FR FC LFE RL RR
    const NativePlayer player(session(), {.hz = {440, 500, 600, 700, 800, 900}, .db = playedDb});

    listenTo(player, 4.0F);

    const double quarter = playedDb + toDb(0.25);
    const double folded = quarter + toDb(std::numbers::sqrt2 / 2);
    EXPECT_TRUE(hears(0, 440, quarter));
    EXPECT_TRUE(hears(1, 500, quarter));
    EXPECT_TRUE(hears(0, 600, folded));
    EXPECT_TRUE(hears(1, 600, folded));
    EXPECT_TRUE(hears(0, 800, folded));
    EXPECT_TRUE(hears(1, 900, folded));
    EXPECT_TRUE(isSilentAt(0, 700));
}

} // namespace
} // namespace velmora
