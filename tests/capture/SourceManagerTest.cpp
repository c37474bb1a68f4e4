#include "capture/SourceManager.h"
#include "platform/simulated/SimulatedPlatform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SourceManagerTest : public testing::Test {
protected:
    SourceManagerTest() {
        machine.startApplication(4711, "Player", "org.player");
        machine.sound.play(4711, constant(0.5F));
        machine.addVirtualMic();
    }

    SimulatedPlatform machine;
    AudioObjectID speakers = machine.addSpeakers();
    AudioObjectID mic = machine.sound.addDevice({.uid = "mic", .name = "Mic", .inputs = {1}});
    SourceManager manager{machine.platform()};
};

TEST_F(SourceManagerTest, IsEmptyUntilItIsRefreshed) {
    EXPECT_THAT(manager.runningApps(), IsEmpty());
    EXPECT_THAT(manager.playingPIDs(), IsEmpty());
    EXPECT_THAT(manager.inputDevices(), IsEmpty());
    EXPECT_THAT(manager.inputDeviceInfos(), IsEmpty());
    EXPECT_THAT(manager.outputDevices(), IsEmpty());
    EXPECT_THAT(manager.outputDeviceInfos(), IsEmpty());
}

TEST_F(SourceManagerTest, FillsEveryList) {
    manager.refresh();

    EXPECT_THAT(manager.runningApps(),
                ElementsAre(AudioSource(AppSource{4711, "Player", "org.player"})));
    EXPECT_THAT(manager.playingPIDs(), ElementsAre(4711));
    EXPECT_THAT(manager.inputDevices(), ElementsAre(AudioSource(DeviceSource{mic, "Mic"})));
    EXPECT_THAT(manager.inputDeviceInfos(), ElementsAre(InputDeviceInfo{mic, "Mic", 1, false}));
    EXPECT_THAT(manager.outputDevices(),
                ElementsAre(AudioSource(DeviceSource{speakers, "Speakers"})));
    EXPECT_THAT(manager.outputDeviceInfos(),
                ElementsAre(InputDeviceInfo{speakers, "Speakers", 2, false}));
}

TEST_F(SourceManagerTest, TellsARefreshThatChangedSomethingAndNoOther) {
    int told = 0;
    const auto connection = manager.changed().connect([&] { ++told; });

    manager.refresh();
    manager.refresh();
    EXPECT_EQ(told, 1);
    machine.sound.pause(4711);
    manager.refresh();

    EXPECT_EQ(told, 2);
    EXPECT_THAT(manager.playingPIDs(), IsEmpty());
}

TEST_F(SourceManagerTest, KeepsItsListsUntilTheNextRefresh) {
    manager.refresh();

    machine.sound.removeDevice(mic);
    EXPECT_EQ(manager.inputDevices().size(), 1U);
    manager.refresh();

    EXPECT_THAT(manager.inputDevices(), IsEmpty());
}

} // namespace
} // namespace velmora
