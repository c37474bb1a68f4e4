// What becomes of single sources of a mix that is on: late, lost, removed, changed.

#include "engine/KeptWholeFixture.h"

#include <gmock/gmock.h>

namespace velmora {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;

using KeptSources = KeptWholeFixture;

// -- late sources --

TEST_F(KeptSources, ASourceThatIsMissingBesideWorkingOnesJoinsWhenItCanBeHeard) {
    const AudioSource silent = silentApplication();
    startWith({silent, player});
    EXPECT_THAT(engine.problems(), testing::SizeIs(1));

    machine.sound.play(5000, constant(0.5F));
    machine.advance(100ms);

    EXPECT_EQ(nextInMic(), 0.5F + 0.25F);
    EXPECT_THAT(engine.problems(), IsEmpty());
    EXPECT_EQ(engine.statistics().at(0).source, silent) << "in the order of the list";
    EXPECT_EQ(tapsMade(), 2U) << "the other one goes on";
}

TEST_F(KeptSources, ADeviceLostInARestartBesideWorkingSourcesReturns) {
    machine.sound.setDefaultOutput(interface4);
    machine.advance(1s);
    startWith({player, wholeInput});
    unplugInterface();
    machine.sound.setDefaultOutput(speakers);
    machine.advance(1s);
    ASSERT_EQ(engine.lastError(), "Interface : Impossible d'assigner l'entrée (err -2)");

    plugInterface();
    machine.advance(100ms);

    EXPECT_EQ(engine.lastError(), std::nullopt);
    EXPECT_EQ(nextInMic(), 0.25F + 0.0625F);
}

TEST_F(KeptSources, AnInputThatWasOpenedBeforeAllOfItsChannelsCameIsStereoOnceTheyAreThere) {
    machine.sound.setInputChannels(interface4, 1);
    startWith({wholeInput, AudioSource(DeviceChannelsSource{interface4, 1, 1, "Left"})});
    machine.advance(100ms);
    ASSERT_EQ(next(mic, 1), next(mic, 2)) << "one channel is heard on both sides";
    const auto started = machine.sound.census();

    machine.sound.setInputChannels(interface4, 4);
    machine.advance(100ms);

    EXPECT_EQ(next(mic, 1), 2 * 0.0625F);
    EXPECT_EQ(next(mic, 2), 0.0625F + 0.125F);
    EXPECT_EQ(machine.sound.census(), started);
}

TEST_F(KeptSources, AnInputThatLosesTheChannelsOfASourceSaysSo) {
    startWith({AudioSource(DeviceChannelsSource{interface4, 3, 2, "Interface"})});

    machine.sound.setInputChannels(interface4, 2);
    machine.advance(100ms);

    ASSERT_THAT(engine.problems(), testing::SizeIs(1));
    EXPECT_EQ(engine.problems()[0].kind, Problem::Kind::channelMissing);
}

TEST_F(KeptSources, AddsNoDelayToASourceThatCameEarlier) {
    startWith({player, silentApplication()});
    machine.advanceCycles(10);
    const auto before = engine.statistics().at(0).stream.backlogMax;

    machine.sound.play(5000, constant(0.5F));
    machine.advance(100ms);

    EXPECT_EQ(engine.statistics().at(0).stream.backlogMax, before);
}

/// One that is to be silenced would be loud until the restart.
TEST_F(KeptSources, ASourceThatComesWhileARestartIsPendingJoinsAtOnce) {
    startWith({player, silentApplication()});
    machine.sound.setDefaultOutput(interface4);
    machine.advance(100ms);

    machine.sound.play(5000, constant(0.5F));
    machine.advance(100ms);
    EXPECT_EQ(tapsMade(), 2U) << "the other one goes on";
    EXPECT_EQ(nextInMic(), 0.5F + 0.25F);
    machine.advance(aWhile);

    EXPECT_EQ(tapsMade(), 2U + 2U);
    EXPECT_EQ(nextInMic(), 0.5F + 0.25F);
}

TEST_F(KeptSources, ASourceThatComesLaterIsBypassedLikeTheOthers) {
    const AudioSource silent = silentApplication();
    engine.setFX(manualGain(-12.0F), silent);
    startWith({player, silent});
    engine.setFxBypassed(true);

    machine.sound.play(5000, constant(0.5F));
    machine.advance(100ms);

    EXPECT_EQ(nextInMic(), 0.5F + 0.25F);
}

/// Units that are made while sound goes on, as on a machine that needs time for it.
class SlowUnits : public AudioUnits {
public:
    explicit SlowUnits(SimulatedPlatform& machine) : machine_(machine) {}
    std::unique_ptr<OutputUnit> makeOutput() override {
        letSoundGoOn();
        return machine_.units.makeOutput();
    }
    std::unique_ptr<InputUnit> makeInput() override {
        letSoundGoOn();
        return machine_.units.makeInput();
    }
    void askForBlocksOf(std::uint32_t leastFrames) override {
        machine_.units.askForBlocksOf(leastFrames);
    }
    BlockReport blocks() const override { return machine_.units.blocks(); }

private:
    void letSoundGoOn() {
        for (int block = 0; block < 6; ++block) {
            machine_.sound.runCycle();
        }
    }

    SimulatedPlatform& machine_;
};

TEST_F(KeptSources, WhatComesInWhileTheMixIsBuiltIsNoLastingDelay) {
    SlowUnits units(machine);
    const Platform machines = machine.platform();
    AudioEngine slow({.devices = machines.devices,
                      .taps = machines.taps,
                      .sinks = machines.sinks,
                      .units = units,
                      .applications = machines.applications,
                      .defaults = machines.defaults,
                      .mainQueue = machines.mainQueue,
                      .appearance = machines.appearance,
                      .loginItem = machines.loginItem,
                      .shortcuts = machines.shortcuts,
                      .notices = machines.notices});
    slow.replaceSources({player, wholeInput});

    slow.start();
    machine.advanceCycles(10);

    constexpr std::int64_t oneBlock = 256; // floats
    const SourceStatistics first = slow.statistics().at(0);
    EXPECT_EQ(first.stream.backlogMax, oneBlock);
    EXPECT_EQ(first.monitor.backlogMax, oneBlock);
}

// -- removed ones --

TEST_F(KeptSources, ASourceRemovedWhileTheServiceIsAwayNeverPlaysAgain) {
    startWith({player, wholeInput});
    loseService();

    engine.remove(player);
    returnService();
    machine.advance(aWhile);

    EXPECT_EQ(nextInMic(), 0.0625F);
    EXPECT_EQ(tapsMade(), 1U);
}

TEST_F(KeptSources, ASourceRemovedWhileTheServiceDoesNotAnswerFallsSilentAtOnce) {
    startWith({player, wholeInput});
    machine.sound.pauseService();
    machine.advance(10ms);

    engine.remove(player);

    EXPECT_EQ(nextInMic(), 0.0625F);
    machine.sound.returnService();
    machine.advance(aWhile);
    EXPECT_EQ(nextInMic(), 0.0625F);
}

TEST_F(KeptSources, TheLastSourceRemovedWhileTheServiceDoesNotAnswerStopsTheMix) {
    startWith({player});
    machine.sound.pauseService();
    machine.advance(10ms);

    engine.remove(player);

    EXPECT_FALSE(engine.isRunning());
    EXPECT_EQ(nextInMic(), 0.0F);
    EXPECT_EQ(machine.sound.census(), nothingRuns);
}

// -- meters --

TEST_F(KeptSources, MetersShowOnlyWhatIsCaptured) {
    startWith({player, browser});
    machine.advance(100ms);
    ASSERT_THAT(engine.sourceLevels(),
                ElementsAre(Key("app-org.browser-4712"), Key("app-org.player-4711")));

    machine.sound.refuse(Operation::openTap);
    machine.sound.removeOurNode();
    machine.advance(1s);

    EXPECT_THAT(engine.sourceLevels(), IsEmpty());
    EXPECT_EQ(engine.level(), 0.0F);
    EXPECT_TRUE(engine.isRunning());
}

TEST_F(KeptSources, MetersFallAtOnceWithASourceThatAnEditTakesOut) {
    startWith({player, wholeInput});
    machine.advance(100ms);
    ASSERT_EQ(engine.level(), 0.25F);

    engine.remove(player);

    EXPECT_LT(engine.level(), 0.25F);
    EXPECT_THAT(engine.sourceLevels(), ElementsAre(Key(wholeInput.id())));
}

TEST_F(KeptSources, MetersStayAtTheLoudestSourceThatAnEditLeaves) {
    startWith({player, browser, wholeInput});
    machine.advance(100ms);

    engine.remove(browser);

    EXPECT_EQ(engine.level(), 0.25F);
}

TEST_F(KeptSources, MetersAreEmptyWhileTheServiceIsAway) {
    startWith({player});
    machine.advance(100ms);

    loseService();

    EXPECT_THAT(engine.sourceLevels(), IsEmpty());
    EXPECT_EQ(engine.level(), 0.0F);
}

} // namespace
} // namespace velmora
