#include "engine/EngineFixture.h"
#include "engine/VelmoraError.h"

#include <gmock/gmock.h>

namespace velmora {
namespace {

using namespace std::chrono_literals;
using testing::Each;
using testing::IsEmpty;

class AudioEngineLifecycle : public EngineFixture {
protected:
    const std::string noSound =
        "Cette app n'a pas encore de son — lance une lecture dedans, puis re-sélectionne-la.";
};

TEST_F(AudioEngineLifecycle, NeedsASource) {
    engine.start();

    EXPECT_EQ(engine.lastError(), "Choisir d'abord une source");
    EXPECT_FALSE(engine.isRunning());
    EXPECT_EQ(machine.sound.census(), nothingRuns);
}

TEST_F(AudioEngineLifecycle, NeedsNoSourceAnyMoreWhenThereIsOne) {
    engine.start();

    engine.add(player);

    EXPECT_EQ(engine.lastError(), std::nullopt);
}

TEST_F(AudioEngineLifecycle, LeavesARunningMixAloneWhenItsListIsEmpty) {
    startWith({player});
    engine.replaceSources({});

    engine.start();

    EXPECT_EQ(engine.lastError(), "Choisir d'abord une source");
    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(nextInMic(), 0.25F);
}

TEST_F(AudioEngineLifecycle, NeedsTheVirtualMicrophone) {
    machine.sound.removeDevice(mic);

    startWith({player});

    EXPECT_FALSE(engine.isRunning());
    EXPECT_EQ(engine.lastError(), VelmoraError::noVirtualMic().errorDescription());
    EXPECT_EQ(machine.sound.census(), nothingRuns);
}

TEST_F(AudioEngineLifecycle, MixesEverySourceIntoBothOutputs) {
    startWith({player, browser, wholeInput});

    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(engine.lastError(), std::nullopt);
    EXPECT_EQ(next(mic, 1), 0.25F + 0.125F + 0.0625F);
    EXPECT_EQ(next(mic, 2), 0.25F + 0.125F + 0.125F);
    EXPECT_EQ(nextMonitored(), 0.25F + 0.125F + 0.0625F);
}

TEST_F(AudioEngineLifecycle, MixesAChannelRange) {
    startWith({thirdPair});

    EXPECT_EQ(next(mic, 1), 3 * 0.0625F);
    EXPECT_EQ(next(mic, 2), 4 * 0.0625F);
}

TEST_F(AudioEngineLifecycle, DropsNothingBetweenCaptureAndOutput) {
    machine.sound.play(playerPid, sine(440, 0.5F));
    startWith({player});

    machine.advanceCycles(100);

    const auto heard = machine.sound.heard(mic, 1);
    ASSERT_EQ(heard.size(), 12800U);
    for (std::size_t frame = 0; frame < heard.size(); ++frame) {
        ASSERT_EQ(heard[frame], sine(440, 0.5F)(static_cast<std::int64_t>(frame), 0)) << frame;
    }
}

TEST_F(AudioEngineLifecycle, RunsWithTheSourcesThatStart) {
    machine.startApplication(5000, "Mute", "org.mute");
    const AudioSource mute = AppSource{5000, "Mute", "org.mute"};

    startWith({mute, player});

    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(engine.lastError(), "Mute : " + noSound);
    EXPECT_EQ(engine.statistics().size(), 1U);
    EXPECT_EQ(nextInMic(), 0.25F);
}

TEST_F(AudioEngineLifecycle, TellsEverySourceThatFailedOnItsOwnLine) {
    const std::string longName(300, 'x');
    const AudioSource mute = AppSource{5000, longName, "org.mute"};
    const AudioSource beyond = DeviceChannelsSource{interface4, 9, 2, "Beyond"};

    startWith({mute, player, beyond});

    EXPECT_EQ(engine.lastError(),
              longName + " : " + noSound + "\nBeyond : Canal 9 indisponible (4 canaux)");
}

TEST_F(AudioEngineLifecycle, StaysStoppedWhenEverySourceFails) {
    const AudioSource mute = AppSource{5000, "Mute", "org.mute"};
    const AudioSource beyond = DeviceChannelsSource{interface4, 9, 2, "Beyond"};

    startWith({mute, beyond});

    EXPECT_FALSE(engine.isRunning());
    EXPECT_EQ(engine.lastError(),
              "Mute : " + noSound + "\nBeyond : Canal 9 indisponible (4 canaux)");
    EXPECT_EQ(machine.sound.census(), nothingRuns);
    EXPECT_THAT(engine.statistics(), IsEmpty());
}

TEST_F(AudioEngineLifecycle, TellsADeviceThatVanishedBeforeTheStart) {
    machine.sound.removeDevice(interface4);

    startWith({wholeInput});

    EXPECT_EQ(engine.lastError(), "Interface : Impossible d'assigner l'entrée (err -2)");
}

TEST_F(AudioEngineLifecycle, ForgetsAnOldErrorAtTheNextStart) {
    machine.sound.refuse(Operation::openTap);
    startWith({player});
    ASSERT_NE(engine.lastError(), std::nullopt);
    machine.sound.allow(Operation::openTap);

    engine.start();

    EXPECT_EQ(engine.lastError(), std::nullopt);
    EXPECT_TRUE(engine.isRunning());
}

TEST_F(AudioEngineLifecycle, StopsAMixThatCannotBeBuiltAgain) {
    startWith({player});
    machine.sound.removeDevice(mic);

    engine.start();

    EXPECT_FALSE(engine.isRunning());
    EXPECT_EQ(machine.sound.census(), nothingRuns);
}

TEST_F(AudioEngineLifecycle, ReleasesEverythingWhenItStops) {
    startWith({player, wholeInput});
    machine.advance(100ms);

    engine.stop();

    EXPECT_FALSE(engine.isRunning());
    EXPECT_EQ(engine.level(), 0.0F);
    EXPECT_THAT(engine.sourceLevels(), IsEmpty());
    EXPECT_EQ(machine.sound.census(), nothingRuns);
    EXPECT_EQ(machine.mainQueue.timerCount(), 0U);
    EXPECT_EQ(nextInMic(), 0.0F);
}

TEST_F(AudioEngineLifecycle, LeavesNothingBehindAfterManyStarts) {
    startWith({player, wholeInput});
    const auto afterOne = machine.sound.census();

    for (int repetition = 0; repetition < 10; ++repetition) {
        engine.start();
    }

    EXPECT_EQ(machine.sound.census(), afterOne);
    EXPECT_EQ(machine.mainQueue.timerCount(), 1U);
}

TEST_F(AudioEngineLifecycle, StopsEverythingWhenItIsDestroyed) {
    {
        AudioEngine second(machine.platform());
        second.replaceSources({player, wholeInput});
        second.start();
        machine.sound.setDefaultOutput(interface4);
        machine.advance(10ms);
        ASSERT_TRUE(second.isRunning());
    }
    EXPECT_EQ(machine.sound.census(), nothingRuns);
    EXPECT_EQ(machine.mainQueue.timerCount(), 0U);

    machine.sound.setDefaultOutput(speakers); // the listener outlives the engine
    machine.advance(1s);
    EXPECT_EQ(machine.sound.census(), nothingRuns);
}

TEST_F(AudioEngineLifecycle, PlaysNothingStaleAfterARestart) {
    machine.sound.skipOutputs(4); // four blocks wait in the rings
    startWith({player});
    machine.advanceCycles(4);
    machine.sound.play(playerPid, constant(0.5F));

    engine.start();

    EXPECT_EQ(nextInMic(), 0.5F);
}

TEST_F(AudioEngineLifecycle, LetsItsLimitersBeginAnewAfterAStop) {
    machine.sound.play(playerPid, constant(8.0F));
    startWith({player});
    machine.advance(100ms);
    machine.sound.play(playerPid, constant(0.25F));
    EXPECT_LT(nextInMic(), 0.2F); // still holding down

    engine.start();

    EXPECT_EQ(nextInMic(), 0.25F);
}

TEST_F(AudioEngineLifecycle, CountsHowItsRingsFare) {
    startWith({player});
    machine.advanceCycles(10);
    machine.sound.delayCaptures(1);
    machine.advanceCycles(10);

    const auto statistics = engine.statistics();

    ASSERT_EQ(statistics.size(), 1U);
    EXPECT_EQ(statistics[0].source, player);
    EXPECT_EQ(statistics[0].stream.underruns, 1);
    EXPECT_EQ(statistics[0].stream.trims, 0);
    EXPECT_EQ(statistics[0].stream.backlogMax, 512); // two blocks: the late one waits ever since
    EXPECT_EQ(statistics[0].monitor.underruns, 1);
}

TEST_F(AudioEngineLifecycle, BeginsTheRangesOfBothRingsAnewWhenAsked) {
    startWith({player});
    machine.advanceCycles(10);
    machine.sound.skipOutputs(20);
    machine.advanceCycles(30);
    const SourceStatistics before = engine.statistics().at(0);
    ASSERT_GT(before.stream.backlogMax, before.stream.backlog);

    engine.restartBacklogRanges();
    machine.advanceCycles(1);

    const SourceStatistics after = engine.statistics().at(0);
    EXPECT_EQ(after.stream.backlogMax, after.stream.backlog);
    EXPECT_EQ(after.monitor.backlogMax, after.monitor.backlog);
    EXPECT_EQ(after.stream.trims, before.stream.trims);
}

TEST_F(AudioEngineLifecycle, BoundsTheDelayWhenAnOutputFallsBehind) {
    startWith({player});
    machine.sound.skipOutputs(100);
    machine.advanceCycles(101);

    const RingStatistics statistics = engine.statistics().at(0).stream;

    EXPECT_EQ(statistics.trims, 1);
    EXPECT_EQ(statistics.underruns, 0);
    machine.advanceCycles(10);
    EXPECT_LE(engine.statistics().at(0).stream.backlog, RingBuffer::maxBacklog);
}

TEST_F(AudioEngineLifecycle, KeepsTwoSecondsForAnOutputThatStandsStill) {
    constexpr std::int64_t blocks = 750; // of 128 frames: two seconds
    startWith({player});
    machine.sound.skipOutputs(blocks - 2); // a ring that is exactly full reads as empty
    machine.advanceCycles(blocks - 1);

    const SourceStatistics statistics = engine.statistics().at(0);

    EXPECT_EQ(statistics.stream.backlog, (blocks - 1) * 256);
    EXPECT_EQ(statistics.stream.trims, 1);
    EXPECT_EQ(statistics.monitor.backlog, (blocks - 1) * 256);
    EXPECT_EQ(statistics.monitor.trims, 1);
}

TEST_F(AudioEngineLifecycle, SilencesASourceWhoseDeviceIsUnplugged) {
    startWith({player, wholeInput});

    machine.sound.removeDevice(interface4);

    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(nextInMic(), 0.25F);
    engine.stop();
    EXPECT_EQ(machine.sound.census(), nothingRuns);
}

struct OutputRefusal {
    std::string step;
    Operation operation;
    std::string message;
};

class StreamOutputRefusal : public EngineFixture,
                            public testing::WithParamInterface<OutputRefusal> {};

TEST_P(StreamOutputRefusal, StopsTheStartAndLeavesNothing) {
    machine.sound.refuse(GetParam().operation, -10875);

    startWith({player, wholeInput});

    EXPECT_FALSE(engine.isRunning());
    EXPECT_EQ(engine.lastError(), GetParam().message);
    EXPECT_EQ(machine.sound.census(), nothingRuns);
    EXPECT_EQ(machine.mainQueue.timerCount(), 0U);
}

INSTANTIATE_TEST_SUITE_P(
    EachStep,
    StreamOutputRefusal,
    testing::Values(OutputRefusal{"Unit", Operation::makeOutput, "Unité audio indisponible"},
                    OutputRefusal{"Device",
                                  Operation::setOutputDevice,
                                  "Impossible d'assigner la sortie (err -10875)"},
                    OutputRefusal{"Start",
                                  Operation::startOutput,
                                  "Démarrage de la sortie refusé (err -10875)"}),
    [](const auto& tested) { return tested.param.step; });

/// Every step that a running source can fail at, for applications and inputs together.
class CaptureStepRefusal : public EngineFixture, public testing::WithParamInterface<Operation> {};

TEST_P(CaptureStepRefusal, LeavesNothingOfTheFailedSource) {
    machine.sound.refuse(GetParam());
    startWith({player, wholeInput});
    ASSERT_TRUE(engine.isRunning());
    EXPECT_EQ(engine.statistics().size(), 1U);
    EXPECT_EQ(machine.sound.census().wrongReleases, 0U);

    engine.stop();

    EXPECT_EQ(machine.sound.census(), nothingRuns);
}

INSTANTIATE_TEST_SUITE_P(EachStep,
                         CaptureStepRefusal,
                         testing::Values(Operation::processForPid,
                                         Operation::openTap,
                                         Operation::openTapDevice,
                                         Operation::openTapCallback,
                                         Operation::openTapStart,
                                         Operation::setInputDevice,
                                         Operation::startInput));

} // namespace
} // namespace velmora
