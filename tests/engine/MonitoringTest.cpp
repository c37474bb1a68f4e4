#include "engine/EngineFixture.h"
#include "engine/MonitoringChoice.h"

#include <gmock/gmock.h>

namespace velmora {
namespace {

using namespace std::chrono_literals;

class MonitoringChoiceTest : public EngineFixture {
protected:
    std::optional<OutputTarget> resolve(const std::optional<std::string>& selection) {
        return resolveMonitoringDevice(machine.devices, selection);
    }

    const OutputTarget onSpeakers{.device = speakers, .firstChannel = 1};
    OutputTarget onInterface(std::int64_t channel) const { return {interface4, channel}; }
};

TEST_F(MonitoringChoiceTest, IsTheDefaultOutputWhenNothingIsChosen) {
    EXPECT_EQ(resolve(std::nullopt), onSpeakers);
}

TEST_F(MonitoringChoiceTest, IsTheChosenDeviceAndChannel) {
    EXPECT_EQ(resolve("interface"), onInterface(1));
    EXPECT_EQ(resolve("interface#3"), onInterface(3));
}

TEST_F(MonitoringChoiceTest, TakesAChannelThatIsNoNumberForTheFirst) {
    for (const char* selection : {"interface#",
                                  "interface#x",
                                  "interface#3x",
                                  "interface# 3",
                                  "interface#3#4",
                                  "interface#999999999999999999999",
                                  "interface##3"}) {
        EXPECT_EQ(resolve(selection), onInterface(1)) << selection;
    }
    EXPECT_EQ(resolve("interface#0"), onInterface(0)); // the same routing as 1
    EXPECT_EQ(resolve("interface#-5"), onInterface(-5));
    EXPECT_EQ(resolve("interface#+3"), onInterface(3));
}

TEST_F(MonitoringChoiceTest, FallsBackToTheDefaultOutputWithoutTheDevice) {
    for (const char* selection : {"gone", "gone#3", "", "#", "#3", "Interface", "interface2#3"}) {
        EXPECT_EQ(resolve(selection), onSpeakers) << selection;
    }
}

TEST_F(MonitoringChoiceTest, IsNothingWithoutADefaultOutput) {
    machine.sound.setDefaultOutput(0);
    EXPECT_EQ(resolve(std::nullopt), std::nullopt);

    machine.sound.setDefaultOutput(speakers);
    machine.sound.refuse(Operation::defaultOutputDevice);
    EXPECT_EQ(resolve(std::nullopt), std::nullopt);
    EXPECT_EQ(resolve("interface#3"), onInterface(3));
}

TEST_F(MonitoringChoiceTest, IsNeverTheVirtualMicrophoneOrALoopback) {
    const AudioObjectID loop =
        machine.sound.addDevice({.uid = "loop", .name = "BLACKHOLE 2ch", .outputs = {2}});

    EXPECT_EQ(resolve("velmora_mic"), std::nullopt);
    EXPECT_EQ(resolve("loop#1"), std::nullopt);
    machine.sound.setDefaultOutput(loop);
    EXPECT_EQ(resolve(std::nullopt), std::nullopt);
}

TEST_F(MonitoringChoiceTest, IsNothingWhenTheDeviceHasNoName) {
    machine.sound.refuse(Operation::deviceName, -1, speakers);

    EXPECT_EQ(resolve(std::nullopt), std::nullopt);
}

class Monitoring : public EngineFixture {};

TEST_F(Monitoring, PlaysOnTheChosenChannels) {
    engine.setMonitoringSelection("interface#3");

    startWith({player});

    EXPECT_EQ(next(interface4, 1), 0.0F);
    EXPECT_EQ(next(interface4, 3), 0.25F);
    EXPECT_EQ(next(interface4, 4), 0.25F);
    EXPECT_EQ(nextMonitored(), 0.0F);
}

TEST_F(Monitoring, MovesWithoutARestartOfTheMix) {
    startWith({player});
    machine.advanceCycles(10);
    const RingStatistics before = engine.statistics().at(0).stream;

    engine.setMonitoringSelection("interface");

    EXPECT_EQ(next(interface4, 1), 0.25F);
    EXPECT_EQ(nextMonitored(), 0.0F);
    EXPECT_EQ(tapsMade(), 1U);
    EXPECT_EQ(engine.statistics().at(0).stream, before);
}

TEST_F(Monitoring, IsOnlyKeptWhileNothingRuns) {
    engine.setMonitoringSelection("interface#3");

    EXPECT_EQ(machine.sound.census(), nothingRuns);
    EXPECT_EQ(machine.defaults.read<std::string>("monitoringSelection"), "interface#3");
    engine.setMonitoringSelection(std::nullopt);
    EXPECT_EQ(machine.defaults.get("monitoringSelection"), std::nullopt);
}

TEST_F(Monitoring, IsMissedSilentlyWhenItCannotBeBuilt) {
    machine.sound.refuse(Operation::setOutputDevice, -10851, speakers);

    startWith({player});

    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(engine.lastError(), std::nullopt);
    EXPECT_EQ(nextInMic(), 0.25F);
    EXPECT_EQ(nextMonitored(), 0.0F);
    EXPECT_EQ(machine.sound.census().units, 1U);
}

TEST_F(Monitoring, IsMissedSilentlyOnChannelsThatTheDeviceLacks) {
    startWith({player});

    engine.setMonitoringSelection("interface#4");

    EXPECT_EQ(engine.lastError(), std::nullopt);
    EXPECT_EQ(next(interface4, 4), 0.0F);
    EXPECT_EQ(nextInMic(), 0.25F);
    EXPECT_EQ(machine.sound.census().units, 1U);
    engine.setMonitoringSelection("interface#9223372036854775807");
    EXPECT_EQ(machine.sound.census().units, 1U);
}

TEST_F(Monitoring, IsLeftOutWhenTheMixWouldFeedItself) {
    machine.sound.setDefaultOutput(mic);

    startWith({player});

    EXPECT_EQ(machine.sound.census().units, 1U);
    EXPECT_EQ(nextInMic(), 0.25F + applicationsOnSpeakers); // the applications play there too
}

TEST_F(Monitoring, LetsItsLimiterBeginAnewWhenItMoves) {
    machine.sound.play(playerPid, constant(8.0F));
    startWith({player});
    machine.advance(100ms);
    machine.sound.play(playerPid, constant(0.25F));

    engine.setMonitoringSelection("interface");

    EXPECT_EQ(next(interface4, 1), 0.25F);
    EXPECT_LT(nextInMic(), 0.2F); // the stream's limiter is not touched
}

TEST_F(Monitoring, EndsWithTheMix) {
    engine.setMonitoringSelection("interface");
    startWith({player});

    engine.stop();

    EXPECT_EQ(next(interface4, 1), 0.0F);
}

class DefaultOutputChange : public EngineFixture {
protected:
    void change() {
        machine.sound.setDefaultOutput(
            *machine.devices.defaultOutputDevice() == speakers ? interface4 : speakers);
    }
};

TEST_F(DefaultOutputChange, RestartsOnceHalfASecondAfterTheLastOfABurst) {
    startWith({player});
    change();
    machine.advance(200ms);
    change();
    machine.advance(200ms);
    change();

    machine.advance(499ms);
    EXPECT_EQ(tapsMade(), 1U);
    machine.advance(1ms);
    EXPECT_EQ(tapsMade(), 2U);
    machine.advance(2s);

    EXPECT_EQ(tapsMade(), 2U);
    machine.sound.pause(playerPid);
    machine.sound.play(browserPid, constant(0.0F));
    machine.sound.play(playerPid, constant(0.5F));
    EXPECT_EQ(next(interface4, 1), 0.5F + 0.5F); // monitored where it plays now
}

TEST_F(DefaultOutputChange, RestartsNothingWhileStopped) {
    engine.replaceSources({player});

    change();
    machine.advance(1s);

    EXPECT_FALSE(engine.isRunning());
    EXPECT_EQ(tapsMade(), 0U);
    EXPECT_EQ(machine.mainQueue.timerCount(), 0U);
}

TEST_F(DefaultOutputChange, IsForgottenWhenTheMixStopsMeanwhile) {
    startWith({player});
    change();
    machine.advance(200ms);

    engine.stop();
    EXPECT_EQ(machine.mainQueue.timerCount(), 0U);
    machine.advance(1s);

    EXPECT_FALSE(engine.isRunning());
    EXPECT_EQ(tapsMade(), 1U);
}

TEST_F(DefaultOutputChange, TakesUpTheNewOutputsChannelCount) {
    machine.sound.setMixdownDivided(false);
    startWith({player});
    EXPECT_EQ(nextInMic(), 0.25F);

    machine.sound.setDefaultOutput(
        machine.sound.addDevice({.uid = "four", .name = "Four", .outputs = {4}}));
    machine.advance(600ms);

    EXPECT_EQ(nextInMic(), 0.5F);
}

} // namespace
} // namespace velmora
