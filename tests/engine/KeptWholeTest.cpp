// How a mix that is on is made whole again, one step at a time, whatever goes and comes.

#include "engine/EngineFixture.h"
#include "engine/VelmoraError.h"

#include <gmock/gmock.h>

namespace velmora {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;

class KeptWhole : public EngineFixture {
protected:
    void unplugInterface() { machine.sound.removeDevice(interface4); }
    void plugInterface() {
        ASSERT_EQ(machine.sound.addDevice(
                      {.uid = "interface", .name = "Interface", .outputs = {4}, .inputs = {4}}),
                  interface4);
        machine.sound.setInput(interface4, channelNumbers(0.0625F));
    }
    void loseService() {
        machine.sound.loseService();
        machine.advance(10ms);
    }
    void returnService() {
        machine.sound.returnService();
        machine.sound.play(playerPid, constant(0.25F));
        machine.advance(10ms);
    }
    /// An application that has no sound yet, and is waited for.
    AudioSource silentApplication() {
        machine.startApplication(5000, "Silent", "org.silent");
        return AppSource{5000, "Silent", "org.silent"};
    }

    static constexpr auto aWhile = 10s; // longer than any pause between two attempts
};

// -- once --

TEST_F(KeptWhole, AStartOfARunningMixBuildsItOnce) {
    startWith({player});
    machine.advance(aWhile);

    engine.start();
    machine.advance(aWhile);

    EXPECT_EQ(tapsMade(), 2U);
}

TEST_F(KeptWhole, AnEditOfARunningMixBuildsItOnce) {
    startWith({player});
    machine.advance(aWhile);

    engine.add(wholeInput);
    machine.advance(aWhile);

    EXPECT_EQ(tapsMade(), 2U);
}

TEST_F(KeptWhole, AMixWhoseNodeSomebodyRemovesIsBuiltOnce) {
    startWith({player, wholeInput});

    machine.sound.removeOurNode();
    machine.advance(aWhile);

    EXPECT_EQ(tapsMade(), 2U);
    EXPECT_EQ(nextInMic(), 0.25F + 0.0625F);
    EXPECT_EQ(nextMonitored(), 0.25F + 0.0625F);
    EXPECT_EQ(engine.lastError(), std::nullopt);
}

TEST_F(KeptWhole, ARemovedNodeIsRepairedAlsoWhileASourceIsAwaited) {
    startWith({player, silentApplication()});
    machine.advance(aWhile);

    machine.sound.removeOurNode();
    machine.advance(100ms);

    EXPECT_EQ(nextInMic(), 0.25F);
}

TEST_F(KeptWhole, ANodeThatGoesWhileARestartIsPendingIsBuiltOnceForBoth) {
    startWith({player});
    machine.sound.setDefaultOutput(interface4);
    machine.advance(100ms);

    machine.sound.removeOurNode();
    machine.advance(aWhile);

    EXPECT_EQ(tapsMade(), 2U);
    EXPECT_TRUE(engine.isRunning());
}

TEST_F(KeptWhole, ADefaultOutputThatComesBackAsItWasRestartsNothing) {
    startWith({player});
    machine.sound.setDefaultOutput(0);
    machine.advance(1s);

    machine.sound.setDefaultOutput(speakers);
    machine.advance(aWhile);

    EXPECT_EQ(tapsMade(), 1U);
    EXPECT_EQ(next(speakers, 1), applicationsOnSpeakers + 0.25F);
}

TEST_F(KeptWhole, AChangeBackOfTheDefaultOutputProlongsTheQuietBeforeTheRestart) {
    startWith({player});
    machine.sound.setDefaultOutput(interface4);
    machine.advance(300ms);
    machine.sound.setDefaultOutput(speakers);

    machine.advance(499ms);
    EXPECT_EQ(tapsMade(), 1U);
    machine.advance(1ms);
    EXPECT_EQ(tapsMade(), 2U);
}

TEST_F(KeptWhole, ADefaultOutputThatChangesBeforeAPauseOfTheServiceSilencesNothing) {
    startWith({player});
    machine.sound.setDefaultOutput(interface4);
    machine.advance(100ms);

    machine.sound.pauseService();
    machine.advance(1s);

    EXPECT_EQ(nextInMic(), 0.25F);
    EXPECT_EQ(tapsMade(), 1U);
}

TEST_F(KeptWhole, ADefaultOutputThatIsAsItWasAfterAPauseOfTheServiceRestartsNothing) {
    startWith({player});
    machine.sound.setDefaultOutput(interface4);
    machine.advance(100ms);
    machine.sound.pauseService();
    machine.advance(1s);

    machine.sound.setDefaultOutput(speakers);
    machine.sound.returnService();
    machine.advance(aWhile);

    EXPECT_EQ(tapsMade(), 1U);
    EXPECT_EQ(nextInMic(), 0.25F);
}

TEST_F(KeptWhole, AFirstDefaultOutputRestartsNothingButTheNextOneDoes) {
    machine.sound.setDefaultOutput(0);
    machine.advance(10ms);
    startWith({player});
    machine.sound.setDefaultOutput(speakers);
    machine.advance(aWhile);
    EXPECT_EQ(tapsMade(), 1U);

    machine.sound.setDefaultOutput(interface4);
    machine.advance(aWhile);

    EXPECT_EQ(tapsMade(), 2U);
}

// -- late sources --

TEST_F(KeptWhole, ASourceThatIsMissingBesideWorkingOnesJoinsWhenItCanBeHeard) {
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

TEST_F(KeptWhole, ADeviceLostInARestartBesideWorkingSourcesReturns) {
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

TEST_F(KeptWhole, AddsNoDelayToASourceThatCameEarlier) {
    startWith({player, silentApplication()});
    machine.advanceCycles(10);
    const auto before = engine.statistics().at(0).stream.backlogMax;

    machine.sound.play(5000, constant(0.5F));
    machine.advance(100ms);

    EXPECT_EQ(engine.statistics().at(0).stream.backlogMax, before);
}

TEST_F(KeptWhole, ASourceThatComesWhileARestartIsPendingIsTakenUpByTheRestart) {
    startWith({player, silentApplication()});
    machine.sound.setDefaultOutput(interface4);
    machine.advance(100ms);

    machine.sound.play(5000, constant(0.5F));
    machine.advance(aWhile);

    EXPECT_EQ(tapsMade(), 1U + 2U);
    EXPECT_EQ(nextInMic(), 0.5F + 0.25F);
}

TEST_F(KeptWhole, ASourceThatComesLaterIsBypassedLikeTheOthers) {
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

private:
    void letSoundGoOn() {
        for (int block = 0; block < 6; ++block) {
            machine_.sound.runCycle();
        }
    }

    SimulatedPlatform& machine_;
};

TEST_F(KeptWhole, WhatComesInWhileTheMixIsBuiltIsNoLastingDelay) {
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
                      .loginItem = machines.loginItem});
    slow.replaceSources({player, wholeInput});

    slow.start();
    machine.advanceCycles(10);

    constexpr std::int64_t oneBlock = 256; // floats
    const SourceStatistics first = slow.statistics().at(0);
    EXPECT_EQ(first.stream.backlogMax, oneBlock);
    EXPECT_EQ(first.monitor.backlogMax, oneBlock);
}

// -- it ends --

TEST_F(KeptWhole, LooksForNothingThatOnlyNewsCanMend) {
    const AudioSource beyond = DeviceChannelsSource{interface4, 9, 2, "Beyond"};
    engine.setMonitoringSelection("interface#4"); // its last channel: no pair
    startWith({player, silentApplication(), beyond});
    EXPECT_EQ(machine.mainQueue.timerCount(), 1U) << "the meters'";

    machine.quitApplication(browserPid); // news, but not for these
    machine.advance(aWhile);

    EXPECT_EQ(machine.mainQueue.timerCount(), 1U);
    EXPECT_EQ(nextInMic(), 0.25F);
}

TEST_F(KeptWhole, TriesARefusedSourceEverMoreSeldom) {
    machine.advance(10ms); // all that was there at the beginning has been told
    machine.sound.refuse(Operation::startInput);
    startWith({player, wholeInput});
    const auto attemptsWithin = [&](std::chrono::milliseconds time) {
        const auto before = machine.sound.refusalsGiven(Operation::startInput);
        machine.advance(time);
        return machine.sound.refusalsGiven(Operation::startInput) - before;
    };

    EXPECT_EQ(attemptsWithin(200ms), 1U);
    EXPECT_EQ(attemptsWithin(400ms), 1U);
    EXPECT_EQ(attemptsWithin(800ms), 1U);
    EXPECT_EQ(attemptsWithin(1600ms), 1U);
    EXPECT_EQ(attemptsWithin(3200ms), 1U);
    EXPECT_EQ(attemptsWithin(60s), 12U);

    machine.quitApplication(browserPid); // something new is seen
    EXPECT_EQ(attemptsWithin(10ms), 1U);
    EXPECT_EQ(attemptsWithin(200ms), 1U);
    EXPECT_EQ(attemptsWithin(400ms), 1U);

    machine.sound.allow(Operation::startInput);
    machine.advance(800ms);
    EXPECT_EQ(nextInMic(), 0.25F + 0.0625F);
    EXPECT_EQ(engine.lastError(), std::nullopt);
    EXPECT_EQ(machine.mainQueue.timerCount(), 1U);
}

TEST_F(KeptWhole, TriesSoonAgainAfterTheUsersStart) {
    machine.advance(10ms);
    machine.sound.refuse(Operation::startInput);
    startWith({player, wholeInput});
    machine.advance(60s);

    engine.start();
    const auto before = machine.sound.refusalsGiven(Operation::startInput);
    machine.advance(200ms);

    EXPECT_EQ(machine.sound.refusalsGiven(Operation::startInput), before + 1);
}

TEST_F(KeptWhole, TriesNothingAgainWhenNewsHaveMendedIt) {
    machine.advance(10ms);
    machine.sound.refuse(Operation::startInput);
    startWith({player, wholeInput});
    machine.sound.allow(Operation::startInput);

    machine.quitApplication(browserPid);
    machine.advance(1ms);

    EXPECT_EQ(nextInMic(), 0.25F + 0.0625F);
    EXPECT_EQ(machine.mainQueue.timerCount(), 1U) << "the meters'";
}

TEST_F(KeptWhole, TriesADeviceThatIsThereButWasRefusedAgain) {
    machine.advance(10ms);
    machine.sound.refuse(Operation::setInputDevice);
    startWith({player, wholeInput});
    machine.sound.allow(Operation::setInputDevice);

    machine.advance(200ms);

    EXPECT_EQ(nextInMic(), 0.25F + 0.0625F);
}

TEST_F(KeptWhole, WaitsForADeviceThatIsGoneWithoutTryingIt) {
    unplugInterface();
    machine.advance(10ms);

    startWith({player, wholeInput});

    EXPECT_EQ(machine.mainQueue.timerCount(), 1U) << "the meters'";
}

TEST_F(KeptWhole, TriesARefusedMonitoringOutputNoMoreWhenItIsGone) {
    engine.setMonitoringSelection("interface");
    machine.sound.refuse(Operation::startOutput, -5, interface4);
    startWith({player});
    machine.advance(10ms);
    ASSERT_EQ(machine.mainQueue.timerCount(), 2U);

    unplugInterface();
    machine.advance(aWhile);

    EXPECT_EQ(machine.mainQueue.timerCount(), 1U);
}

TEST_F(KeptWhole, LeavesAMonitoringOutputThatPlaysAlone) {
    startWith({player});
    machine.advance(10ms);
    machine.sound.refuse(Operation::startOutput, -5, speakers);

    machine.quitApplication(browserPid);
    machine.advance(aWhile);

    EXPECT_EQ(machine.sound.refusalsGiven(Operation::startOutput), 0U);
    EXPECT_EQ(next(speakers, 1), 0.25F + 0.25F);
}

TEST_F(KeptWhole, TriesARefusedMonitoringOutputAgainWithoutAWord) {
    machine.sound.refuse(Operation::startOutput, -5, speakers);
    startWith({player});
    EXPECT_EQ(nextMonitored(), 0.0F);
    EXPECT_EQ(engine.lastError(), std::nullopt);

    machine.sound.allow(Operation::startOutput, speakers);
    machine.advance(200ms);

    EXPECT_EQ(nextMonitored(), 0.25F);
    EXPECT_EQ(machine.mainQueue.timerCount(), 1U);
}

TEST_F(KeptWhole, TriesAMuteThatWasRefusedAgain) {
    startWith({player});
    machine.advance(100ms);
    ASSERT_EQ(engine.level(), 0.25F);
    machine.sound.refuse(Operation::openTap);
    engine.setDirectMuted(true, player);
    EXPECT_EQ(engine.lastError(), std::nullopt);
    EXPECT_EQ(engine.level(), 0.0F);
    EXPECT_THAT(engine.sourceLevels(), IsEmpty());

    machine.sound.allow(Operation::openTap);
    machine.advance(200ms);

    EXPECT_EQ(nextInMic(), 0.25F);
}

// -- what is off, removed or missing --

TEST_F(KeptWhole, ASourceRemovedWhileTheServiceIsAwayNeverPlaysAgain) {
    startWith({player, wholeInput});
    loseService();

    engine.remove(player);
    returnService();
    machine.advance(aWhile);

    EXPECT_EQ(nextInMic(), 0.0625F);
    EXPECT_EQ(tapsMade(), 1U);
}

TEST_F(KeptWhole, ASourceRemovedWhileTheServiceDoesNotAnswerFallsSilentAtOnce) {
    startWith({player, wholeInput});
    machine.sound.pauseService();
    machine.advance(10ms);

    engine.remove(player);

    EXPECT_EQ(nextInMic(), 0.0625F);
    machine.sound.returnService();
    machine.advance(aWhile);
    EXPECT_EQ(nextInMic(), 0.0625F);
}

TEST_F(KeptWhole, TheLastSourceRemovedWhileTheServiceDoesNotAnswerStopsTheMix) {
    startWith({player});
    machine.sound.pauseService();
    machine.advance(10ms);

    engine.remove(player);

    EXPECT_FALSE(engine.isRunning());
    EXPECT_EQ(nextInMic(), 0.0F);
    EXPECT_EQ(machine.sound.census(), nothingRuns);
}

TEST_F(KeptWhole, MetersShowOnlyWhatIsCaptured) {
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

TEST_F(KeptWhole, MetersFallAtOnceWithASourceThatAnEditTakesOut) {
    startWith({player, wholeInput});
    machine.advance(100ms);
    ASSERT_EQ(engine.level(), 0.25F);

    engine.remove(player);

    EXPECT_LT(engine.level(), 0.25F);
    EXPECT_THAT(engine.sourceLevels(), ElementsAre(Key(wholeInput.id())));
}

TEST_F(KeptWhole, MetersStayAtTheLoudestSourceThatAnEditLeaves) {
    startWith({player, browser, wholeInput});
    machine.advance(100ms);

    engine.remove(browser);

    EXPECT_EQ(engine.level(), 0.25F);
}

TEST_F(KeptWhole, MetersAreEmptyWhileTheServiceIsAway) {
    startWith({player});
    machine.advance(100ms);

    loseService();

    EXPECT_THAT(engine.sourceLevels(), IsEmpty());
    EXPECT_EQ(engine.level(), 0.0F);
}

TEST_F(KeptWhole, AnEditWhileTheMixIsWaitedForDoesNotEndIt) {
    machine.sound.setDefaultOutput(interface4);
    machine.advance(1s);
    startWith({wholeInput});
    unplugInterface();
    machine.sound.setDefaultOutput(speakers);
    machine.advance(1s);

    engine.add(silentApplication());
    EXPECT_TRUE(engine.isRunning());
    plugInterface();
    machine.advance(100ms);

    EXPECT_EQ(nextInMic(), 0.0625F);
}

// -- the microphone and the rate --

TEST_F(KeptWhole, AMixWhoseMicrophoneWasReplacedPlaysIntoTheNewOne) {
    startWith({player});
    machine.sound.removeDevice(mic);
    const AudioObjectID other =
        machine.sound.addDevice({.uid = "other", .name = "Velmora 2", .outputs = {2}});

    machine.advance(100ms);

    EXPECT_EQ(next(other, 1), 0.25F);
}

TEST_F(KeptWhole, AMixWhoseMicrophoneComesBackGoesOn) {
    startWith({player});
    machine.sound.removeDevice(mic);
    machine.advance(1s);
    EXPECT_TRUE(engine.isRunning());

    EXPECT_EQ(machine.addVirtualMic(), mic);
    machine.advance(100ms);

    EXPECT_EQ(nextInMic(), 0.25F);
}

TEST_F(KeptWhole, FiltersFollowTheRateAtWhichTheGraphRuns) {
    engine.setFX({.lowcut = 2}, player);
    machine.sound.play(playerPid, sine(100, 0.5F));
    startWith({player});
    machine.advance(200ms);

    machine.sound.setRate(96000.0);
    machine.sound.play(playerPid, sine(100, 0.5F));
    machine.advance(500ms);
    machine.sound.forgetHeard();
    machine.advance(100ms);
    const auto followed = machine.sound.heard(mic, 1);

    AudioEngine fresh(machine.platform());
    engine.stop();
    fresh.replaceSources({player});
    fresh.start();
    machine.advance(500ms);
    machine.sound.forgetHeard();
    machine.advance(100ms);
    const auto made = machine.sound.heard(mic, 1);
    EXPECT_NEAR(std::ranges::max(followed), std::ranges::max(made), 1e-3);
    EXPECT_EQ(tapsMade(), 3U) << "one for each rate, one for the fresh engine";
}

// -- the second copy --

struct Interruption {
    std::string name;
    void (*happen)(SimulatedPlatform& machine, AudioObjectID speakers);
};

/// Everything that makes the mixer build itself anew without anybody having asked for it.
class ChosenMonitor : public KeptWhole,
                      public testing::WithParamInterface<std::tuple<Interruption, bool>> {
protected:
    static constexpr bool silentIsAwaited(const ParamType& param) { return std::get<1>(param); }

    void startMonitoredOnInterface() {
        engine.setMonitoringSelection("interface#3");
        std::vector<AudioSource> sources{player};
        if (silentIsAwaited(GetParam())) {
            sources.push_back(silentApplication());
        }
        startWith(sources);
        ASSERT_EQ(next(interface4, 3), 0.25F);
    }
    void interrupt() {
        std::get<0>(GetParam()).happen(machine, speakers);
        machine.sound.play(playerPid, constant(0.25F));
        machine.sound.pause(browserPid);
        machine.advance(2s);
    }
};

TEST_P(ChosenMonitor, PlaysNowhereElseWhileItsDeviceIsGone) {
    startMonitoredOnInterface();
    unplugInterface();

    interrupt();
    EXPECT_EQ(nextInMic(), 0.25F);
    EXPECT_EQ(next(speakers, 1), 0.25F) << "the application itself";
    interrupt(); // a second one moves it as little
    EXPECT_EQ(next(speakers, 1), 0.25F);

    plugInterface();
    machine.advance(100ms);
    EXPECT_EQ(next(interface4, 3), 0.25F);
    EXPECT_EQ(next(speakers, 1), 0.25F);
    EXPECT_EQ(nextInMic(), 0.25F);
}

TEST_P(ChosenMonitor, PlaysOnWhereItsDeviceStayed) {
    startMonitoredOnInterface();

    interrupt();

    EXPECT_EQ(next(interface4, 3), 0.25F);
    EXPECT_EQ(next(speakers, 1), 0.25F);
}

INSTANTIATE_TEST_SUITE_P(
    EachWay,
    ChosenMonitor,
    testing::Combine(testing::Values(Interruption{"ServiceLoss",
                                                  [](SimulatedPlatform& machine, AudioObjectID) {
                                                      machine.sound.loseService();
                                                      machine.advance(300ms);
                                                      machine.sound.returnService();
                                                  }},
                                     Interruption{"NodeRemoval",
                                                  [](SimulatedPlatform& machine, AudioObjectID) {
                                                      machine.sound.removeOurNode();
                                                  }},
                                     Interruption{
                                         "DefaultOutputChange",
                                         [](SimulatedPlatform& machine, AudioObjectID speakers) {
                                             const AudioObjectID other = machine.sound.addDevice(
                                                 {.uid = "hdmi", .name = "HDMI", .outputs = {2}});
                                             machine.sound.setDefaultOutput(other);
                                             machine.advance(1s);
                                             machine.sound.setDefaultOutput(speakers);
                                         }},
                                     Interruption{"Pause",
                                                  [](SimulatedPlatform& machine, AudioObjectID) {
                                                      machine.sound.pauseService();
                                                      machine.advance(300ms);
                                                      machine.sound.returnService();
                                                  }}),
                     testing::Bool()),
    [](const auto& tested) {
        return std::get<0>(tested.param).name +
               (std::get<1>(tested.param) ? "WhileASourceIsAwaited" : "");
    });

TEST_F(KeptWhole, OnlyTheUserLetsMonitoringFallBack) {
    engine.setMonitoringSelection("interface#3");
    unplugInterface();

    startWith({player}); // the user's start
    EXPECT_EQ(nextMonitored(), 0.25F);
    machine.sound.removeOurNode(); // keeps to where the user let it fall back
    machine.advance(100ms);
    EXPECT_EQ(nextMonitored(), 0.25F);

    plugInterface(); // the chosen one is there
    machine.advance(100ms);
    EXPECT_EQ(next(interface4, 3), 0.25F);
    EXPECT_EQ(nextMonitored(), 0.0F);

    unplugInterface(); // and from here on it is that one or none
    machine.sound.removeOurNode();
    machine.advance(100ms);
    EXPECT_EQ(nextMonitored(), 0.0F);

    engine.add(browser); // the user's edit
    EXPECT_EQ(nextMonitored(), 0.25F + 0.125F);
}

TEST_F(KeptWhole, AChoiceThatIsNotThereFallsBackAlsoWhileTheMixRuns) {
    engine.setMonitoringSelection("interface");
    startWith({player});

    engine.setMonitoringSelection("gone");

    EXPECT_EQ(nextMonitored(), 0.25F);
}

TEST_F(KeptWhole, AnEmptyChoiceFollowsTheDefaultOutputLikeNone) {
    engine.setMonitoringSelection("");
    startWith({wholeInput});
    machine.sound.pause(playerPid);
    machine.sound.pause(browserPid);

    machine.sound.setDefaultOutput(interface4);
    machine.advance(600ms);

    EXPECT_EQ(next(interface4, 1), 0.0625F);
}

TEST_F(KeptWhole, AFallbackIsNotFollowedToAnotherDevice) {
    engine.setMonitoringSelection("gone");
    startWith({player});
    EXPECT_EQ(nextMonitored(), 0.25F);

    machine.sound.setDefaultOutput(interface4); // say, the headphones jack is now a loudspeaker
    machine.sound.removeDevice(speakers);
    machine.advance(1s);

    machine.sound.pause(playerPid);
    machine.sound.pause(browserPid);
    machine.sound.setInput(interface4, silence());
    EXPECT_EQ(next(interface4, 1), 0.0F);
}

TEST_F(KeptWhole, MonitoringWithoutAChoiceFollowsTheDefaultOutput) {
    startWith({wholeInput});
    machine.sound.pause(playerPid);
    machine.sound.pause(browserPid);

    machine.sound.setDefaultOutput(interface4);
    machine.advance(600ms);

    EXPECT_EQ(next(interface4, 1), 0.0625F);
    EXPECT_EQ(next(speakers, 1), 0.0F);
}

TEST_F(KeptWhole, MonitoringWithoutAChoicePlaysAgainWhenAnOutputReturns) {
    startWith({wholeInput});
    machine.sound.pause(playerPid);
    machine.sound.pause(browserPid);
    machine.sound.setDefaultOutput(0);
    machine.sound.removeDevice(speakers);
    machine.advance(2s);
    EXPECT_EQ(nextInMic(), 0.0625F);

    EXPECT_EQ(machine.addSpeakers(), speakers);
    machine.advance(1s);

    EXPECT_EQ(next(speakers, 1), 0.0625F);
}

TEST_F(KeptWhole, AMixWithoutMonitoringComesBackAfterALoss) {
    machine.sound.setDefaultOutput(0);
    startWith({wholeInput});

    loseService();
    EXPECT_EQ(engine.lastError(), "Service audio injoignable");
    returnService();

    EXPECT_EQ(nextInMic(), 0.0625F);
    EXPECT_EQ(engine.lastError(), std::nullopt);
}

TEST_F(KeptWhole, AMixWhoseMonitoringIsRefusedComesBackAfterALoss) {
    machine.sound.refuse(Operation::setOutputDevice, -5, speakers);
    startWith({wholeInput});

    loseService();
    returnService();

    EXPECT_EQ(nextInMic(), 0.0625F);
    EXPECT_EQ(engine.lastError(), std::nullopt);
}

TEST_F(KeptWhole, TheMicrophoneNeedsNoDefaultOutputToComeBack) {
    startWith({wholeInput});
    loseService();
    machine.sound.setDefaultOutput(0);

    returnService();

    EXPECT_EQ(nextInMic(), 0.0625F);
    EXPECT_EQ(engine.lastError(), std::nullopt);
    machine.sound.pause(playerPid);
    machine.sound.setDefaultOutput(speakers);
    machine.advance(aWhile);
    EXPECT_EQ(next(speakers, 1), 0.0625F);
}

TEST_F(KeptWhole, ADeviceChosenDuringALossIsTheOneThatPlays) {
    engine.setMonitoringSelection("interface#3");
    startWith({wholeInput});
    loseService();

    engine.setMonitoringSelection("interface");
    returnService();
    machine.advance(100ms);

    EXPECT_EQ(next(interface4, 1), 0.0625F);
    EXPECT_EQ(next(interface4, 3), 0.0F);
}

TEST_F(KeptWhole, AMonitorThatIsChosenAwayDuringAPauseFallsSilent) {
    startWith({wholeInput});
    machine.sound.pause(playerPid);
    machine.sound.pause(browserPid);
    machine.sound.pauseService();
    machine.advance(10ms);

    engine.setMonitoringSelection("interface#3");

    EXPECT_EQ(next(speakers, 1), 0.0F);
}

// -- what is told --

TEST_F(KeptWhole, TellsWhatIsStillMissingOnlyWhenItHadTimeToFollowTheService) {
    startWith({player, wholeInput});
    loseService();
    unplugInterface();

    machine.sound.returnService();
    machine.advance(500ms);
    EXPECT_EQ(engine.lastError(), "Service audio injoignable");
    machine.advance(500ms);

    EXPECT_EQ(engine.lastError(),
              "Player : Cette app n'a pas encore de son — lance une lecture dedans, puis "
              "re-sélectionne-la.\nInterface : Impossible d'assigner l'entrée (err -2)");
}

TEST_F(KeptWhole, WhatARunningMixLacksCannotBeDismissed) {
    startWith({player, silentApplication()});

    EXPECT_FALSE(engine.canDismissProblems());
    engine.dismissProblems();

    EXPECT_THAT(engine.problems(), testing::SizeIs(1));
}

TEST_F(KeptWhole, TellsAtOnceThatAllIsWell) {
    startWith({wholeInput});
    loseService();

    returnService();

    EXPECT_EQ(engine.lastError(), std::nullopt);
}

TEST_F(KeptWhole, TellsObserversOfAStepOnlyWhatChanged) {
    startWith({wholeInput});
    machine.sound.setInput(interface4, silence());
    machine.advance(5s);
    int told = 0;
    const auto connection = engine.changed().connect([&] { ++told; });

    machine.quitApplication(browserPid);
    machine.advance(1s);
    EXPECT_EQ(told, 0);
    loseService();
    EXPECT_EQ(told, 1);
    machine.sound.returnService();
    machine.advance(10ms);
    EXPECT_EQ(told, 2);
}

TEST_F(KeptWhole, StopsNothingTwiceWhenTheLastSourceIsRemoved) {
    startWith({player});
    machine.advance(100ms);
    int told = 0;
    const auto connection = engine.changed().connect([&] { ++told; });

    engine.remove(player);

    EXPECT_EQ(told, 1);
}

} // namespace
} // namespace velmora
