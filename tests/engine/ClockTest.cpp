// Clocks that run apart, blocks that change their size, threads that stand still: what it costs is
// counted, bounded, and over at once.
#include "engine/EngineFixture.h"

namespace velmora {
namespace {

constexpr std::int64_t rate = 48000;
constexpr std::int64_t blockFrames = 128;
constexpr std::int64_t cyclesPerSecond = rate / blockFrames; // 375
constexpr std::int64_t blockFloats = 2 * blockFrames;
constexpr std::int64_t fullBacklog = RingBuffer::maxBacklog;
/// A fast source fills a ring block by block, from the one that a read finds to the eight that fit.
constexpr std::int64_t blocksUntilFull = fullBacklog / blockFloats - 1;

class Clocks : public EngineFixture {
protected:
    /// Tells when it was played: a ramp that a delay of a few blocks cannot repeat.
    static float moment(std::int64_t frame) { return static_cast<float>(frame % 16384) / 32768.0F; }

    Clocks() {
        const Waveform moments = [](std::int64_t frame, std::size_t) { return moment(frame); };
        machine.sound.setInput(headset, moments);
        machine.sound.play(playerPid, moments);
        machine.sound.pause(browserPid);
        engine.setMonitoringSelection("interface#3");
    }

    /// The main thread runs with the sound.
    void play(std::int64_t seconds) {
        for (std::int64_t second = 0; second < seconds; ++second) {
            machine.advanceCycles(cyclesPerSecond);
            machine.sound.forgetHeard();
        }
    }
    /// The sound runs alone.
    void playWithoutMainThread(std::int64_t cycles) {
        for (std::int64_t cycle = 0; cycle < cycles; ++cycle) {
            machine.sound.runCycle();
        }
    }

    RingStatistics stream() { return engine.statistics().front().stream; }
    RingStatistics monitor() { return engine.statistics().front().monitor; }

    const AudioObjectID headset =
        machine.sound.addDevice({.uid = "headset", .name = "Headset", .inputs = {1}});
    const AudioSource voice = DeviceSource{headset, "Headset"};
    const RingStatistics undisturbed{
        .backlogMin = blockFloats, .backlogMax = blockFloats, .backlog = blockFloats};
};

TEST_F(Clocks, AnInputThatIsTooFastLosesNothingButItsSurplus) {
    machine.sound.setClockSkew(headset, 500);
    startWith({voice});

    play(60);

    const std::int64_t surplusBlocks = 60 * 24 / blockFrames; // 500 ppm are 24 frames a second
    EXPECT_EQ(stream().trims, surplusBlocks - blocksUntilFull);
    EXPECT_EQ(stream().underruns, 0);
    EXPECT_EQ(stream().backlogMax, fullBacklog + blockFloats);
}

TEST_F(Clocks, AnInputThatIsTooSlowIsFilledUpWithNothingButItsDeficit) {
    machine.sound.setClockSkew(headset, -500);
    startWith({voice});

    play(60);

    EXPECT_EQ(stream().underruns, 60 * 24 / blockFrames);
    EXPECT_EQ(stream().trims, 0);
    EXPECT_EQ(stream().backlogMax, blockFloats);
}

TEST_F(Clocks, EachOutputIsMeasuredByItsOwnClock) {
    machine.sound.setClockSkew(speakers, 310); // the application's clock, and the monitor's
    machine.sound.setClockSkew(mic, -190);
    engine.setMonitoringSelection("speakers");
    startWith({player});

    play(60);

    EXPECT_EQ(monitor().underruns, 0);
    EXPECT_EQ(monitor().trims, 0);
    EXPECT_EQ(stream().underruns, 0);
    // Of 14.88 frames a second too many, and of 9.12 that the microphone does not take.
    const std::int64_t surplusBlocks = 60 * 1488 / 100 / blockFrames + 60 * 912 / 100 / blockFrames;
    EXPECT_EQ(stream().trims, surplusBlocks - blocksUntilFull);
}

TEST_F(Clocks, AnHourOfDriftKeepsTheBacklogBounded) {
    constexpr std::int64_t slowRate = 8000; // rings count blocks: the same drift, sooner computed
    machine.sound.setRate(slowRate);
    machine.sound.setClockSkew(headset, 200);
    startWith({voice});

    for (std::int64_t minute = 0; minute < 60; ++minute) {
        playWithoutMainThread(60 * slowRate / blockFrames); // meters have nothing to do with it
        machine.sound.forgetHeard();
    }

    const std::int64_t surplusBlocks = 3600 * slowRate / 5000 / blockFrames; // one in 5000
    for (const RingStatistics& ring : {stream(), monitor()}) {
        EXPECT_EQ(ring.trims, surplusBlocks - blocksUntilFull);
        EXPECT_EQ(ring.underruns, 0);
        EXPECT_EQ(ring.backlogMax, fullBacklog + blockFloats);
    }
}

TEST_F(Clocks, BlocksOfAnySizeThatFitsAreChangedWithoutLossOrDelay) {
    startWith({voice});

    for (const std::int64_t frames : {1024, 64, 1024, 128}) {
        machine.sound.setBlockFrames(frames);
        play(1);
        EXPECT_EQ(stream().backlog, 2 * frames);
    }

    EXPECT_EQ(stream().underruns, 0);
    EXPECT_EQ(stream().trims, 0);
}

TEST_F(Clocks, BlocksThatDoNotFitCostTheirSecondHalfAndLeaveNoDelay) {
    startWith({voice});

    machine.sound.setBlockFrames(2048); // twice what a ring keeps
    machine.advanceCycles(10);
    EXPECT_EQ(stream().underruns, 10);
    EXPECT_EQ(stream().trims, 10);
    machine.sound.setBlockFrames(blockFrames);
    machine.advanceCycles(10);

    EXPECT_EQ(stream().underruns, 10);
    EXPECT_EQ(stream().trims, 10);
    EXPECT_EQ(stream().backlog, blockFloats);
    EXPECT_EQ(machine.sound.heard(mic, 1).back(), moment(10 * 2048 + 10 * blockFrames - 1));
}

TEST_F(Clocks, ABlockedMainThreadIsNotHeard) {
    startWith({voice});

    playWithoutMainThread(5 * cyclesPerSecond);

    EXPECT_EQ(stream(), undisturbed);
    const std::vector<float> heard = machine.sound.heard(mic, 1);
    ASSERT_EQ(heard.size(), static_cast<std::size_t>(5 * rate));
    for (std::size_t frame = 0; frame < heard.size(); ++frame) {
        ASSERT_EQ(heard[frame], moment(static_cast<std::int64_t>(frame)));
    }
    machine.mainQueue.advance(std::chrono::seconds(5)); // the thread goes on
    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(engine.lastError(), std::nullopt);
}

TEST_F(Clocks, AProcessThatStoodStillGoesOnWithThePresentSound) {
    startWith({voice, player});
    machine.advanceCycles(10);

    machine.sound.standStill(3 * cyclesPerSecond);
    playWithoutMainThread(3 * cyclesPerSecond);
    machine.sound.forgetHeard();
    machine.advanceCycles(1);

    EXPECT_EQ(stream(), undisturbed);
    EXPECT_EQ(monitor(), undisturbed);
    const std::int64_t now = (10 + 3 * cyclesPerSecond) * blockFrames;
    EXPECT_EQ(machine.sound.heard(mic, 1).front(), 2 * moment(now)); // both sources
}

} // namespace
} // namespace velmora
