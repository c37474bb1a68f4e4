// Where the second copy plays while everything goes and comes.

#include "engine/KeptWholeFixture.h"

#include <gmock/gmock.h>

namespace velmora {
namespace {

using namespace std::chrono_literals;

using KeptMonitor = KeptWholeFixture;

struct Interruption {
    std::string name;
    void (*happen)(SimulatedPlatform& machine, AudioObjectID speakers);
};

/// Everything that makes the mixer build itself anew without anybody having asked for it.
class ChosenMonitor : public KeptWholeFixture,
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

TEST_F(KeptMonitor, OnlyTheUserLetsMonitoringFallBack) {
    engine.setMonitoringSelection("interface#3");
    unplugInterface();

    startWith({player}); // the user's start
    EXPECT_EQ(nextMonitored(), 0.25F);
    machine.advance(2s);
    machine.sound.removeOurNode(); // keeps to where the user let it fall back
    machine.advance(100ms);
    EXPECT_EQ(nextMonitored(), 0.25F);

    plugInterface(); // the chosen one is there
    machine.advance(100ms);
    EXPECT_EQ(next(interface4, 3), 0.25F);
    EXPECT_EQ(nextMonitored(), 0.0F);

    unplugInterface(); // and from here on it is that one or none
    machine.advance(2s);
    machine.sound.removeOurNode();
    machine.advance(100ms);
    EXPECT_EQ(nextMonitored(), 0.0F);

    engine.add(browser); // the user's edit
    EXPECT_EQ(nextMonitored(), 0.25F + 0.125F);
}

TEST_F(KeptMonitor, AChoiceThatIsNotThereFallsBackAlsoWhileTheMixRuns) {
    engine.setMonitoringSelection("interface");
    startWith({player});

    engine.setMonitoringSelection("gone");

    EXPECT_EQ(nextMonitored(), 0.25F);
}

TEST_F(KeptMonitor, AnEmptyChoiceFollowsTheDefaultOutputLikeNone) {
    engine.setMonitoringSelection("");
    startWith({wholeInput});
    machine.sound.pause(playerPid);
    machine.sound.pause(browserPid);

    machine.sound.setDefaultOutput(interface4);
    machine.advance(600ms);

    EXPECT_EQ(next(interface4, 1), 0.0625F);
}

TEST_F(KeptMonitor, ARestartThatNobodyAskedForLetsNothingFallBack) {
    engine.setMonitoringSelection("interface#3");
    startWith({player});
    unplugInterface();

    engine.insertSource(browser, 1);
    engine.restart(); // say, an application that was launched has joined

    EXPECT_EQ(nextMonitored(), 0.0F);
    EXPECT_EQ(nextInMic(), 0.25F + 0.125F);
}

TEST_F(KeptMonitor, ARestartThatNobodyAskedForSwitchesNothingOff) {
    startWith({player});
    machine.sound.refuse(Operation::openTap);

    engine.restart();
    EXPECT_TRUE(engine.isRunning());
    machine.sound.allow(Operation::openTap);
    machine.advance(200ms);
    EXPECT_EQ(nextInMic(), 0.25F);

    engine.stop();
    engine.restart();
    EXPECT_FALSE(engine.isRunning());
}

TEST_F(KeptMonitor, AFallbackIsNotFollowedToAnotherDevice) {
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

TEST_F(KeptMonitor, MonitoringWithoutAChoiceFollowsTheDefaultOutput) {
    startWith({wholeInput});
    machine.sound.pause(playerPid);
    machine.sound.pause(browserPid);

    machine.sound.setDefaultOutput(interface4);
    machine.advance(600ms);

    EXPECT_EQ(next(interface4, 1), 0.0625F);
    EXPECT_EQ(next(speakers, 1), 0.0F);
}

TEST_F(KeptMonitor, MonitoringWithoutAChoicePlaysAgainWhenAnOutputReturns) {
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

TEST_F(KeptMonitor, AMixWithoutMonitoringComesBackAfterALoss) {
    machine.sound.setDefaultOutput(0);
    startWith({wholeInput});

    loseService();
    EXPECT_EQ(engine.lastError(), "Service audio injoignable");
    returnService();

    EXPECT_EQ(nextInMic(), 0.0625F);
    EXPECT_EQ(engine.lastError(), std::nullopt);
}

TEST_F(KeptMonitor, AMixWhoseMonitoringIsRefusedComesBackAfterALoss) {
    machine.sound.refuse(Operation::setOutputDevice, -5, speakers);
    startWith({wholeInput});

    loseService();
    returnService();

    EXPECT_EQ(nextInMic(), 0.0625F);
    EXPECT_EQ(engine.lastError(), std::nullopt);
}

TEST_F(KeptMonitor, TheMicrophoneNeedsNoDefaultOutputToComeBack) {
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

TEST_F(KeptMonitor, ADeviceChosenDuringALossIsTheOneThatPlays) {
    engine.setMonitoringSelection("interface#3");
    startWith({wholeInput});
    loseService();

    engine.setMonitoringSelection("interface");
    returnService();
    machine.advance(100ms);

    EXPECT_EQ(next(interface4, 1), 0.0625F);
    EXPECT_EQ(next(interface4, 3), 0.0F);
}

TEST_F(KeptMonitor, AMonitorThatIsChosenAwayDuringAPauseFallsSilent) {
    startWith({wholeInput});
    machine.sound.pause(playerPid);
    machine.sound.pause(browserPid);
    machine.sound.pauseService();
    machine.advance(10ms);

    engine.setMonitoringSelection("interface#3");

    EXPECT_EQ(next(speakers, 1), 0.0F);
}

} // namespace
} // namespace velmora
