// Two devices whose clocks differ by 500 ppm: at the rate of their difference, 24 frames a second,
// a mix that ran by both would fall behind or run dry.

#include "MixerTest.h"

#include "support/ToneAnalysis.h"

#include <chrono>
#include <vector>

namespace velmora {
namespace {

using namespace support;
using namespace std::chrono_literals;

constexpr std::size_t oneSecond = 48000; // frames
constexpr int fastPpm = 250;
constexpr int slowPpm = -250;

class Drift : public MixerTest {
protected:
    static void SetUpTestSuite() {
        SessionDevice fast = speakers;
        fast.ownClockPpm = fastPpm;
        SessionDevice slow = interface4;
        slow.ownClockPpm = slowPpm;
        begin({.devices = {fast, slow}});
    }

    /// Both clocks are there again for the next test.
    void TearDown() override {
        engine.stop();
        session().killDaemon();
        session().startServices();
        MixerTest::TearDown();
    }

    /// The application plays to the fast device; the slow one is recorded from and played to.
    void mixOverBothDevices() {
        app.play("music", leftHz, rightHz, playedDb);
        engine.setMonitoringSelection(interface4.name + "#3");
        mix({playing(app.pid()), input(interface4.description, 1, 2)});
        EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
        EXPECT_TRUE(mic.hears(0, inputLeftHz, playedDb));
        EXPECT_TRUE(atSlow.hears(0, leftHz, playedDb));
    }

    /// Of both ends of both sources' rings.
    std::vector<RingStatistics> rings() const {
        std::vector<RingStatistics> all;
        for (const SourceStatistics& source : engine.statistics()) {
            all.push_back(source.stream);
            all.push_back(source.monitor);
        }
        return all;
    }

    ToneApp app{session()};
    Feeder feeder{
        session(), interface4.name, {1, 2}, {.hz = {inputLeftHz, inputRightHz}, .db = playedDb}};
    Recorder mic{session(), microphone, {1, 2}};
    Recorder atFast{session(), speakers.name, {1, 2}};
    Recorder atSlow{session(), interface4.name, {3, 4}};
};

TEST_F(Drift, TwoDevicesThatDriftApartAreOneClockToTheMixAndNoRingNoticesThem) {
    // Without a mix, each is a clock of its own.
    EXPECT_TRUE(atFast.hasClock(fastPpm));
    EXPECT_TRUE(atSlow.hasClock(slowPpm));

    mixOverBothDevices();
    EXPECT_TRUE(mic.hasClock(fastPpm));
    EXPECT_TRUE(atSlow.hasClock(fastPpm));
    ASSERT_TRUE(mic.waitForMore(oneSecond)); // until everyone who has just joined is done
    const std::size_t from = mic.frames();
    const auto before = rings();

    // Apart, they would differ by 288 frames then, more than two blocks.
    ASSERT_TRUE(mic.waitForMore(12 * oneSecond, 60s));

    const auto after = rings();
    EXPECT_EQ(after.size(), 4U);
    EXPECT_EQ(after, before);
    EXPECT_EQ(countBreaks(mic.all().channel(0, from), leftHz), 0);
    EXPECT_EQ(countBreaks(mic.all().channel(0, from), inputLeftHz), 0);
}

TEST_F(Drift, WhenTheFasterClockEndsTheMixGoesOnByTheOtherAndNoLater) {
    mixOverBothDevices();
    ASSERT_TRUE(mic.hasClock(fastPpm));
    ASSERT_TRUE(mic.waitForMore(oneSecond));
    const auto before = rings();

    session().remove(clockOf(speakers.name));

    ASSERT_TRUE(mic.hasClock(slowPpm));
    const std::size_t from = mic.frames();
    ASSERT_TRUE(mic.waitForMore(oneSecond + oneSecond / 4)); // what a level is measured over
    EXPECT_NEAR(mic.toneDb(0, leftHz), playedDb, 0.5);
    EXPECT_NEAR(mic.toneDb(0, inputLeftHz), playedDb, 0.5);
    const auto after = rings();
    ASSERT_EQ(after.size(), before.size());
    for (std::size_t ring = 0; ring < after.size(); ++ring) {
        EXPECT_EQ(after[ring].backlog, before[ring].backlog) << "ring " << ring;
    }
    EXPECT_EQ(countBreaks(mic.all().channel(0, from + oneSecond), leftHz), 0);
}

} // namespace
} // namespace velmora
