// How a mix that is on is made whole again, one step at a time, whatever goes and comes.

#include "engine/KeptWholeFixture.h"
#include "engine/VelmoraError.h"
#include "platform/PublicSinks.h"

#include <gmock/gmock.h>

namespace velmora {
namespace {

using namespace std::chrono_literals;

using KeptWhole = KeptWholeFixture;

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

TEST_F(KeptWhole, AMixThatIsEndedAgainAndAgainIsBuiltEverMoreSeldom) {
    startWith({player});
    machine.advance(2s);
    const auto builtWithin = [&](std::chrono::milliseconds time) {
        const std::size_t before = tapsMade();
        for (auto passed = 0ms; passed < time; passed += 10ms) {
            if (machine.sound.census().runningUnits > 0) {
                machine.sound.removeOurNode();
            }
            machine.advance(10ms);
        }
        return tapsMade() - before;
    };

    EXPECT_EQ(builtWithin(100ms), 1U) << "the first time at once";
    EXPECT_LE(builtWithin(60s), 20U);

    machine.advance(aWhile); // it is left in peace
    EXPECT_EQ(nextInMic(), 0.25F);
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

// -- what is off or replaced --

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

TEST_F(KeptWhole, AMixIsNeverPlayedIntoTheDeviceOfDawMode) {
    startWith({player});
    machine.advance(1s);
    const auto daw = machine.sinks.create({.name = "Velmora DAW",
                                           .uid = std::string(dawSinkUID),
                                           .masterUID = "interface",
                                           .followerUID = "velmora_mic"});
    ASSERT_TRUE(daw);

    machine.sound.removeDevice(mic); // it flickers
    machine.advance(1s);
    EXPECT_EQ(next(interface4, 1), 0.0F);
    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(machine.addVirtualMic(), mic);
    machine.advance(1s);

    EXPECT_EQ(nextInMic(), 0.25F);
    EXPECT_EQ(next(interface4, 1), 0.0F);
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
