#include "platform/simulated/SimulatedPlatform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace velmora {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

TEST(SimulatedPlatform, TurnsTimersAndCyclesInOrderOfTime) {
    SimulatedPlatform machine;
    const AudioObjectID speakers = machine.addSpeakers();
    std::vector<std::size_t> framesHeard;
    const auto timer = machine.mainQueue.every(
        10ms, [&] { framesHeard.push_back(machine.sound.heard(speakers, 1).size()); });

    machine.advance(30ms);

    // A cycle of 128 frames takes 2.667 ms: 3, 7 and 11 are over after 10, 20 and 30 ms.
    EXPECT_THAT(framesHeard, ElementsAre(384, 896, 1408));
}

TEST(SimulatedPlatform, MovesWholeCyclesOfTheChosenSize) {
    SimulatedPlatform machine;
    const AudioObjectID speakers = machine.addSpeakers();
    machine.sound.setBlockFrames(1000);

    machine.advanceFrames(1001);

    EXPECT_EQ(machine.sound.heard(speakers, 1).size(), 2000U);
}

TEST(SimulatedPlatform, SumsEverythingThatPlaysOnADevice) {
    SimulatedPlatform machine;
    const AudioObjectID speakers = machine.addSpeakers();
    machine.sound.play(7, constant(0.25F));
    machine.sound.play(8, constant(0.5F));

    machine.advanceCycles(1);

    EXPECT_EQ(machine.sound.heard(speakers, 2), std::vector<float>(128, 0.75F));
}

TEST(SimulatedPlatform, PlaysAPublicSinkOnItsParts) {
    SimulatedPlatform machine;
    const AudioObjectID first = machine.sound.addDevice({.uid = "a", .name = "A", .outputs = {4}});
    const AudioObjectID second = machine.sound.addDevice({.uid = "b", .name = "B", .outputs = {2}});
    const AudioObjectID sink =
        machine.sinks.create({.name = "Both", .uid = "both", .masterUID = "a", .followerUID = "b"})
            .value();
    machine.sound.setDefaultOutput(sink);
    machine.sound.play(7, constant(0.5F));

    machine.advanceCycles(1);

    EXPECT_EQ(machine.devices.devices()->back(), sink);
    EXPECT_EQ(machine.devices.transport(sink), Transport::aggregate);
    EXPECT_EQ(machine.sound.heard(first, 1).back(), 0.5F);
    EXPECT_EQ(machine.sound.heard(second, 2).back(), 0.5F);
    EXPECT_EQ(machine.sinks.remove(sink), statusOk);
    EXPECT_THAT(*machine.devices.devices(), ElementsAre(first, second));
}

TEST(SimulatedPlatform, KeepsNothingOfTheTimeBeforeALossOfTheService) {
    SimulatedPlatform machine;
    const AudioObjectID speakers = machine.addSpeakers();
    machine.sound.play(7, constant(0.5F));
    std::vector<bool> told;
    machine.advanceCycles(1);
    const auto connection =
        machine.devices.changed().connect([&] { told.push_back(machine.devices.isAvailable()); });
    int calls = 0;
    const auto unit = machine.units.makeOutput();
    unit->setDevice(speakers);
    unit->start([&](std::int64_t, std::span<float* const>) { ++calls; });

    machine.sound.loseService();
    machine.advanceCycles(1);

    EXPECT_EQ(machine.devices.devices(), std::nullopt);
    EXPECT_EQ(calls, 0);
    EXPECT_NE(machine.units.makeOutput()->setDevice(speakers), statusOk);
    machine.sound.returnService();
    machine.advanceCycles(1);
    EXPECT_THAT(told, ElementsAre(false, true));
    EXPECT_THAT(*machine.devices.devices(), ElementsAre(speakers));
    EXPECT_EQ(machine.taps.processForPid(7), std::nullopt);
    EXPECT_EQ(calls, 0);
}

TEST(SimulatedPlatform, GivesAHelpersProcessToItsApplication) {
    SimulatedPlatform machine;
    machine.startApplication(50, "Browser", "org.browser");
    machine.applications.addHelper(50, 51);
    machine.sound.addHelper(50, 51);

    const AudioObjectID process = machine.sound.play(51, constant(1.0F));

    EXPECT_EQ(machine.taps.processForPid(50), process);
    EXPECT_EQ(machine.taps.processPid(process), 50);
    EXPECT_EQ(machine.applications.byPid(51)->name, "Browser");
}

TEST(SimulatedApplications, LaunchesWhatIsInstalledUnlessPlannedOtherwise) {
    SimulatedPlatform machine;
    machine.applications.install(
        {.bundleID = "org.player", .name = "Player", .location = "/apps/player"});
    machine.applications.planLaunch("/apps/broken", {.result = std::nullopt, .delay = 1500ms});
    std::vector<std::string> cameUp;
    const auto note = [&](const std::optional<RunningApplication>& application) {
        cameUp.push_back(application ? application->name : "none");
    };

    machine.applications.launch("/apps/player", note);
    machine.applications.launch("/apps/broken", note);
    EXPECT_THAT(cameUp, ElementsAre());
    machine.advance(1s);
    EXPECT_THAT(cameUp, ElementsAre("Player"));
    machine.advance(1s);

    EXPECT_THAT(cameUp, ElementsAre("Player", "none"));
    EXPECT_EQ(machine.applications.byBundleID("org.player").size(), 1U);
    EXPECT_THAT(machine.applications.launched(), ElementsAre("/apps/player", "/apps/broken"));
}

TEST(SimulatedAppearance, TellsAChangeAndNothingElse) {
    SimulatedAppearance desktop;
    int told = 0;
    desktop.onChange([&] { ++told; });

    desktop.setDark(false);
    desktop.setDark(true);

    EXPECT_EQ(told, 1);
    EXPECT_TRUE(desktop.isDark());
}

} // namespace
} // namespace velmora
