// What others do to the graph's clock and to our threads: the mix is whole again at once, and no
// later than before.

#include "MixerTest.h"

#include "support/ToneAnalysis.h"

#include <chrono>
#include <csignal>
#include <fstream>
#include <thread>

namespace velmora {
namespace {

using namespace support;
using namespace std::chrono_literals;

constexpr std::size_t second = 48000;           // frames
constexpr std::size_t heardFrames = second / 4; // what a level is measured over

class Clocks : public ListeningMixerTest {
protected:
    Clocks() { engine.setMonitoringSelection(interface4.name + "#3"); }
    ~Clocks() override { session().forceQuantum(0); }

    void waitFor(std::size_t frames) const { EXPECT_TRUE(mic.waitForMore(frames, 30s)); }

    /// A second of recorded time from now on, the tone is there and stays for a whole quarter.
    void expectSoundWithinASecond() const {
        waitFor(second + heardFrames);
        EXPECT_NEAR(mic.toneDb(0, leftHz), playedDb, 0.5);
        EXPECT_NEAR(mic.toneDb(1, rightHz), playedDb, 0.5);
    }

    /// What every ring has in store at most over a second. Units: floats.
    std::vector<std::int64_t> largestBacklogs() {
        engine.restartBacklogRanges();
        waitFor(second);
        std::vector<std::int64_t> largest;
        for (const SourceStatistics& source : engine.statistics()) {
            largest.push_back(source.stream.backlogMax);
            largest.push_back(source.monitor.backlogMax);
        }
        return largest;
    }

    ToneApp app{session()};
};

TEST_F(Clocks, ARingHoldsTheBlockOfItsCycleAndNoDelay) {
    const Feeder feeder(
        session(), interface4.name, {1, 2}, {.hz = {inputLeftHz, inputRightHz}, .db = playedDb});
    session().forceQuantum(128);
    app.play("music", leftHz, rightHz, playedDb);
    const std::vector<AudioSource> sources{playing(app.pid()), input(interface4.description, 1, 2)};
    const std::vector<std::int64_t> oneBlock(4, 2 * 128); // floats in each of four rings
    mix(sources);
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    EXPECT_TRUE(mic.hears(0, inputLeftHz, playedDb));

    EXPECT_EQ(largestBacklogs(), oneBlock);
}

TEST_F(Clocks, ChangesOfTheBlockSizeByOthersLeaveTheMixWholeAndNoLater) {
    app.play("music", leftHz, rightHz, playedDb);
    mix({playing(app.pid())});
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    const auto before = largestBacklogs();

    for (const std::uint32_t frames : {1024, 64, 1024, 128}) {
        session().forceQuantum(frames);
        expectSoundWithinASecond();
    }
    // Nothing larger than 1024 frames fits between the ends of a ring; afterwards all is well.
    session().forceQuantum(2048);
    waitFor(second);
    session().forceQuantum(0);
    expectSoundWithinASecond();

    const auto after = largestBacklogs();
    ASSERT_EQ(after.size(), before.size());
    for (std::size_t ring = 0; ring < after.size(); ++ring) {
        EXPECT_LE(after[ring], before[ring] + 2 * 128) << "ring " << ring; // one block at most
    }
}

TEST_F(Clocks, TheSoundGoesOnWhileTheMainThreadIsBlocked) {
    app.play("music", leftHz, rightHz, playedDb);
    mix({playing(app.pid())});
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    waitFor(second / 2);
    const std::size_t from = mic.frames();
    const auto before = engine.statistics().front().stream;

    for (int look = 0; look < 300 && mic.frames() < from + 5 * second; ++look) {
        std::this_thread::sleep_for(100ms); // and the event loop stands still
    }

    EXPECT_GE(mic.frames(), from + 5 * second);
    EXPECT_EQ(countBreaks(mic.all().channel(0, from), leftHz), 0);
    const auto after = engine.statistics().front().stream;
    EXPECT_EQ(after.underruns, before.underruns);
    EXPECT_EQ(after.trims, before.trims);
    EXPECT_EQ(after.backlog, before.backlog);
    EXPECT_TRUE(engine.isRunning());
}

TEST_F(Clocks, AMixerThatStoodStillForThreeSecondsIsHeardAgainAndNoLater) {
    app.play("music", leftHz, rightHz, playedDb);
    const ChildProcess mixer =
        session().start({VELMORA_COMMANDED_MIXER, std::to_string(playing(app.pid()).app()->pid)},
                        "commanded-mixer",
                        /*takesLines=*/true);
    const auto log = session().folder() / "log" / "commanded-mixer";
    const auto backlogs = [&] {
        const auto sizeBefore = std::filesystem::file_size(log);
        mixer.send("backlogs");
        EXPECT_TRUE(waitUntil([&] { return std::filesystem::file_size(log) > sizeBefore; }));
        std::ifstream in(log);
        in.seekg(static_cast<std::streamoff>(sizeBefore));
        std::vector<int> frames;
        std::string word;
        for (int number = 0; in >> word >> number;) {
            frames.push_back(number);
        }
        return frames;
    };
    mixer.send("start");
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    const auto before = backlogs();

    mixer.signal(SIGSTOP);
    std::this_thread::sleep_for(3s);
    mixer.signal(SIGCONT);

    expectSoundWithinASecond();
    const auto after = backlogs();
    ASSERT_EQ(after.size(), before.size());
    for (std::size_t ring = 0; ring < after.size(); ++ring) {
        EXPECT_LE(after[ring], before[ring] + 128) << "ring " << ring;
    }
}

} // namespace
} // namespace velmora
