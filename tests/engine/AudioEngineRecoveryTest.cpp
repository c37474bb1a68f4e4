// What becomes of a mix when the audio service, devices and applications go and come back.

#include "engine/EngineFixture.h"
#include "engine/VelmoraError.h"

#include <gmock/gmock.h>

namespace velmora {
namespace {

using namespace std::chrono_literals;

class AudioEngineRecovery : public EngineFixture {
protected:
    void loseService() {
        machine.sound.loseService();
        machine.advance(10ms);
    }
    void returnService() {
        machine.sound.returnService();
        machine.advance(10ms);
    }
    void plugInterface() {
        EXPECT_EQ(machine.sound.addDevice(
                      {.uid = "interface", .name = "Interface", .outputs = {4}, .inputs = {4}}),
                  interface4);
        machine.sound.setInput(interface4, channelNumbers(0.0625F));
    }
    float nextFromInterface() {
        machine.advance(1s);
        return next(interface4, 3);
    }

    const std::string serviceAway = "Service audio injoignable";
    const std::string noSound =
        "Cette app n'a pas encore de son — lance une lecture dedans, puis re-sélectionne-la.";
    static constexpr auto soon = 250ms; // more than one attempt apart
};

TEST_F(AudioEngineRecovery, SaysThatTheServiceIsAwayAlsoWhileStopped) {
    loseService();
    EXPECT_EQ(engine.lastError(), serviceAway);
    EXPECT_FALSE(engine.isRunning());

    returnService();
    EXPECT_EQ(engine.lastError(), std::nullopt);
    EXPECT_FALSE(engine.isRunning());
}

TEST_F(AudioEngineRecovery, KnowsFromItsBeginningThatTheServiceIsAway) {
    machine.sound.loseService();
    AudioEngine early(machine.platform());
    EXPECT_EQ(early.lastError(), serviceAway);

    machine.sound.returnService();
    machine.advance(10ms);

    EXPECT_EQ(early.lastError(), std::nullopt);
}

TEST_F(AudioEngineRecovery, KeepsAnotherMessageWhenTheServiceReturnsWhileStopped) {
    loseService();
    const Problem other{.kind = Problem::Kind::notFound, .subject = "Radio"};
    engine.tell(ProblemOrigin::recall, {other});

    returnService();

    EXPECT_THAT(engine.problems(), testing::ElementsAre(other));
}

TEST_F(AudioEngineRecovery, IsOnAndSaysWhyItIsSilentWhileTheServiceIsAway) {
    startWith({player, wholeInput});

    loseService();
    machine.advance(2s);

    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(engine.lastError(), serviceAway);
    EXPECT_EQ(engine.level(), 0.0F);
    EXPECT_EQ(nextInMic(), 0.0F);
}

TEST_F(AudioEngineRecovery, IsWholeAgainAfterTheServiceReturned) {
    startWith({player, wholeInput});
    loseService();

    returnService();
    machine.sound.play(playerPid, constant(0.25F));
    machine.advance(soon);

    EXPECT_EQ(engine.lastError(), std::nullopt);
    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(nextInMic(), 0.25F + 0.0625F);
    EXPECT_EQ(next(speakers, 1), 0.25F + 0.25F + 0.0625F);
    engine.stop();
    EXPECT_EQ(machine.sound.census(), nothingRuns);
    EXPECT_EQ(machine.mainQueue.timerCount(), 0U);
}

TEST_F(AudioEngineRecovery, IsBuiltOnlyOnceWhenAllReturnsAtOnce) {
    startWith({player});
    machine.sound.loseService();
    machine.sound.returnService();
    machine.sound.play(playerPid, constant(0.25F));

    machine.advance(1s);

    EXPECT_EQ(tapsMade(), 2U);
    EXPECT_EQ(machine.mainQueue.timerCount(), 1U); // the meters'
    EXPECT_EQ(nextInMic(), 0.25F);
}

TEST_F(AudioEngineRecovery, LeavesAloneWhatGoesOnWhileTheServiceDoesNotAnswer) {
    startWith({player, wholeInput});

    machine.sound.pauseService();
    machine.advance(1s);
    EXPECT_EQ(engine.lastError(), serviceAway);
    EXPECT_EQ(nextInMic(), 0.25F + 0.0625F);
    returnService();
    machine.advance(1s);

    EXPECT_EQ(engine.lastError(), std::nullopt);
    EXPECT_EQ(nextInMic(), 0.25F + 0.0625F);
    EXPECT_EQ(tapsMade(), 1U);
    EXPECT_EQ(machine.mainQueue.timerCount(), 1U);
}

TEST_F(AudioEngineRecovery, SurvivesManyLosses) {
    startWith({player, wholeInput});
    const auto whole = machine.sound.census();

    for (int loss = 0; loss < 20; ++loss) {
        loseService();
        returnService();
        machine.sound.play(playerPid, constant(0.25F));
        machine.advance(soon);
        EXPECT_EQ(nextInMic(), 0.25F + 0.0625F) << loss;
    }

    EXPECT_EQ(machine.sound.census(), whole);
}

TEST_F(AudioEngineRecovery, IsWholeAgainWhenDevicesAndApplicationsReturnInPieces) {
    startWith({player, wholeInput});
    loseService();
    machine.sound.setDefaultOutput(0);
    machine.sound.removeDevice(mic);
    machine.sound.removeDevice(interface4);

    returnService();
    EXPECT_EQ(engine.lastError(), serviceAway) << "its devices still come and go";
    machine.sound.setDefaultOutput(speakers);
    machine.advance(1s);
    EXPECT_EQ(engine.lastError(), VelmoraError::noVirtualMic().errorDescription());
    EXPECT_TRUE(engine.isRunning());

    EXPECT_EQ(machine.addVirtualMic(), mic);
    machine.advance(1s);
    EXPECT_EQ(engine.lastError(),
              "Player : " + noSound + "\nInterface : Impossible d'assigner l'entrée (err -2)");

    plugInterface();
    machine.advance(soon);
    EXPECT_EQ(engine.lastError(), "Player : " + noSound);
    EXPECT_EQ(nextInMic(), 0.0625F);

    machine.sound.play(playerPid, constant(0.25F));
    machine.advance(soon);
    EXPECT_EQ(engine.lastError(), std::nullopt);
    EXPECT_EQ(nextInMic(), 0.25F + 0.0625F);
}

TEST_F(AudioEngineRecovery, AddsALateSourceWithoutTouchingTheOthers) {
    startWith({player, browser});
    loseService();
    returnService();
    machine.sound.play(playerPid, constant(0.25F));
    machine.advance(soon);
    const std::size_t taps = tapsMade();
    const auto playersRing = engine.statistics().at(0).stream.underruns;

    machine.sound.play(browserPid, constant(0.125F));
    machine.advance(soon);

    EXPECT_EQ(nextInMic(), 0.25F + 0.125F);
    EXPECT_EQ(tapsMade(), taps + 1);
    EXPECT_EQ(engine.statistics().at(0).stream.underruns, playersRing);
}

TEST_F(AudioEngineRecovery, EndsWithTheUsersStop) {
    startWith({player});
    loseService();

    engine.stop();
    EXPECT_EQ(engine.lastError(), serviceAway) << "as true as before";
    returnService();
    machine.sound.play(playerPid, constant(0.25F));
    machine.advance(1s);

    EXPECT_FALSE(engine.isRunning());
    EXPECT_EQ(engine.lastError(), std::nullopt);
    EXPECT_EQ(machine.sound.census(), nothingRuns);
    EXPECT_EQ(machine.mainQueue.timerCount(), 0U);
}

TEST_F(AudioEngineRecovery, LeavesNoMessageWhenStoppedBeforeTheDefaultOutputIsKnown) {
    startWith({player});
    machine.sound.setDefaultOutput(0);
    loseService();
    returnService();
    ASSERT_EQ(engine.lastError(), serviceAway);

    engine.stop();

    EXPECT_EQ(engine.lastError(), std::nullopt);
}

TEST_F(AudioEngineRecovery, BeginsAStartThatWasAskedForWhileTheServiceWasAway) {
    loseService();

    startWith({wholeInput});
    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(engine.lastError(), serviceAway);
    returnService();

    EXPECT_EQ(engine.lastError(), std::nullopt);
    EXPECT_EQ(nextInMic(), 0.0625F);
    EXPECT_EQ(next(speakers, 1), 0.0625F);
}

TEST_F(AudioEngineRecovery, TakesUpTheListAsItWasEditedMeanwhile) {
    startWith({player, wholeInput});
    loseService();

    engine.remove(player);
    engine.add(thirdPair);
    EXPECT_TRUE(engine.isRunning());
    returnService();
    machine.advance(soon);

    EXPECT_EQ(nextInMic(), 0.0625F + 3 * 0.0625F);
    EXPECT_EQ(engine.lastError(), std::nullopt);
}

TEST_F(AudioEngineRecovery, IsBuiltAnewForAnEditWhileASourceIsMissing) {
    startWith({player, wholeInput});
    loseService();
    returnService();
    machine.advance(soon);

    engine.add(thirdPair);

    EXPECT_EQ(nextInMic(), 0.0625F + 3 * 0.0625F);
    EXPECT_EQ(engine.lastError(), "Player : " + noSound);
    engine.remove(player);
    EXPECT_EQ(engine.lastError(), std::nullopt);
    EXPECT_EQ(nextInMic(), 0.0625F + 3 * 0.0625F);
}

TEST_F(AudioEngineRecovery, StopsWhenItsLastSourceIsRemovedMeanwhile) {
    startWith({player});
    loseService();

    engine.remove(player);

    EXPECT_FALSE(engine.isRunning());
    returnService();
    EXPECT_EQ(machine.sound.census(), nothingRuns);
}

TEST_F(AudioEngineRecovery, MonitorsNowhereElseWhileTheChosenDeviceIsMissing) {
    engine.setMonitoringSelection("interface#3");
    startWith({player});
    loseService();
    machine.sound.removeDevice(interface4);

    returnService();
    machine.sound.play(playerPid, constant(0.25F));
    machine.advance(1s);
    EXPECT_EQ(nextInMic(), 0.25F);
    EXPECT_EQ(next(speakers, 1), 0.25F) << "the application itself";

    plugInterface();
    EXPECT_EQ(nextFromInterface(), 0.25F);
    EXPECT_EQ(next(speakers, 1), 0.25F);
}

TEST_F(AudioEngineRecovery, MonitorsWhereTheUserChoosesMeanwhile) {
    engine.setMonitoringSelection("interface#3");
    startWith({wholeInput});
    loseService();

    engine.setMonitoringSelection(std::nullopt);
    returnService();
    machine.advance(soon);

    EXPECT_EQ(next(speakers, 1), 0.0625F);
}

TEST_F(AudioEngineRecovery, FollowsTheDefaultOutputWhileASourceIsMissing) {
    startWith({player, wholeInput});
    loseService();
    returnService();
    machine.advance(soon);

    machine.sound.setDefaultOutput(interface4);
    machine.advance(600ms);

    EXPECT_EQ(next(interface4, 1), 0.0625F);
    EXPECT_EQ(next(speakers, 1), 0.0F);
}

TEST_F(AudioEngineRecovery, WaitsForADeviceThatWentTogetherWithTheDefaultOutput) {
    machine.sound.setDefaultOutput(interface4);
    machine.advance(1s);
    startWith({wholeInput});

    machine.sound.removeDevice(interface4); // one plug: an input and the default output
    machine.sound.setDefaultOutput(speakers);
    machine.advance(1s);
    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(engine.lastError(), "Interface : Impossible d'assigner l'entrée (err -2)");
    EXPECT_EQ(nextInMic(), 0.0F);

    plugInterface();
    machine.advance(soon);
    EXPECT_EQ(nextInMic(), 0.0625F);
    EXPECT_EQ(engine.lastError(), std::nullopt);
}

} // namespace
} // namespace velmora
