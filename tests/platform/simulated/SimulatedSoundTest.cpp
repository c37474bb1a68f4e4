// What the simulated machine tells and what it takes away, so that tests can build on it.

#include "platform/simulated/SimulatedPlatform.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>

namespace velmora {
namespace {

class SimulatedSoundTest : public testing::Test {
protected:
    std::unique_ptr<OutputUnit> startedOutput() {
        auto unit = machine.units.makeOutput();
        EXPECT_EQ(unit->setDevice(speakers), statusOk);
        EXPECT_EQ(unit->start([](std::int64_t, std::span<float* const>) {}), statusOk);
        return unit;
    }
    std::unique_ptr<ApplicationTap> tap() {
        return machine.taps
            .open(player, ApplicationTaps::Mute::whileTapped, 1.0F, [](const TapBlock&) {})
            .value();
    }
    /// How often `change` is told as one of what is there.
    int toldBy(const std::function<void()>& change) {
        machine.advance({});
        int told = 0;
        const auto connection = machine.devices.changed().connect([&] { ++told; });
        change();
        EXPECT_EQ(told, 0) << "told outside the main queue";
        machine.advance({});
        return told;
    }

    static constexpr std::int32_t pid = 4711;
    SimulatedPlatform machine;
    AudioObjectID speakers = machine.addSpeakers();
    AudioObjectID player = machine.sound.play(pid, constant(0.5F));
};

TEST_F(SimulatedSoundTest, TellsEveryKindOfChange) {
    EXPECT_EQ(toldBy([&] { machine.addVirtualMic(); }), 1);
    EXPECT_EQ(toldBy([&] { machine.sound.removeDevice(speakers); }), 1);
    EXPECT_EQ(toldBy([&] { machine.sound.play(7, silence()); }), 1);
    EXPECT_EQ(toldBy([&] { machine.quitApplication(7); }), 1);
    EXPECT_EQ(toldBy([&] { machine.sound.setRate(96000); }), 1);
    EXPECT_EQ(toldBy([&] { machine.sound.removeOurNode(); }), 1);
    EXPECT_EQ(toldBy([&] { machine.sound.pauseService(); }), 1);
    EXPECT_EQ(toldBy([&] { machine.sound.returnService(); }), 1);
    EXPECT_EQ(toldBy([&] { machine.sound.loseService(); }), 1);
}

TEST_F(SimulatedSoundTest, TellsSeveralChangesInARowOnce) {
    EXPECT_EQ(toldBy([&] {
                  machine.sound.loseService();
                  machine.sound.returnService();
                  machine.addVirtualMic();
              }),
              1);
}

TEST_F(SimulatedSoundTest, TellsNothingWhenAKnownApplicationPlaysOrPauses) {
    EXPECT_EQ(toldBy([&] {
                  machine.sound.pause(pid);
                  machine.sound.play(pid, constant(0.25F));
                  machine.sound.endProcess(8);
              }),
              0);
}

TEST_F(SimulatedSoundTest, TellsADefaultOutputThatIsThereAndNoOther) {
    machine.advance({});
    int told = 0;
    const auto connection = machine.devices.defaultOutputChanged().connect([&] { ++told; });

    machine.sound.setDefaultOutput(0);
    machine.advance({});
    EXPECT_EQ(told, 0);

    machine.sound.setDefaultOutput(speakers);
    machine.advance({});
    EXPECT_EQ(told, 1);

    machine.sound.removeDevice(speakers);
    machine.advance({});
    EXPECT_EQ(told, 1);
    EXPECT_EQ(machine.addSpeakers(), speakers);
    machine.advance({});
    EXPECT_EQ(told, 2) << "it came back";
}

TEST_F(SimulatedSoundTest, KillsWhatIsOpenWhenOurNodeIsRemoved) {
    const auto output = startedOutput();
    const auto opened = tap();
    const auto pointed = machine.units.makeOutput();
    ASSERT_EQ(pointed->setDevice(speakers), statusOk);

    machine.sound.removeOurNode();

    EXPECT_FALSE(output->isAlive());
    EXPECT_FALSE(opened->isAlive());
    EXPECT_TRUE(pointed->isAlive());
    EXPECT_EQ(machine.sound.census().runningUnits, 0U);
    EXPECT_EQ(machine.taps.processForPid(pid), player);
    EXPECT_TRUE(startedOutput()->isAlive());
    EXPECT_TRUE(tap()->isAlive());
}

TEST_F(SimulatedSoundTest, KillsNothingWhileTheServiceIsPaused) {
    const auto output = startedOutput();
    const auto opened = tap();

    machine.sound.pauseService();
    machine.sound.returnService();

    EXPECT_TRUE(output->isAlive());
    EXPECT_TRUE(opened->isAlive());
}

TEST_F(SimulatedSoundTest, CountsWhatIsOpen) {
    const SimulatedSound::Census nothing;
    {
        const auto output = startedOutput();
        const auto opened = tap();
        machine.sound.removeOurNode();
        EXPECT_EQ(machine.sound.census(), (SimulatedSound::Census{.taps = 1, .units = 1}));
    }
    EXPECT_EQ(machine.sound.census(), nothing);

    EXPECT_NE(machine.sinks.remove(speakers), statusOk);
    EXPECT_EQ(machine.sound.census().wrongReleases, 1U);
}

TEST_F(SimulatedSoundTest, GivesUnitsTheRateOfTheMachine) {
    const auto output = startedOutput();
    EXPECT_EQ(output->sampleRate(), 48000.0);

    machine.sound.setRate(96000);

    EXPECT_EQ(output->sampleRate(), 96000.0);
    EXPECT_EQ(machine.taps.tapRate(), 96000.0);
    EXPECT_EQ(machine.devices.nominalRate(speakers), 96000.0);
}

} // namespace
} // namespace velmora
