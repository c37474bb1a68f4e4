#include "capture/DAWModeManager.h"
#include "capture/DeviceQueries.h"
#include "platform/simulated/SimulatedPlatform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using testing::ElementsAre;

constexpr const char* uid = "app.velmora.daw.aggregate";

class DAWModeManagerTest : public testing::Test {
protected:
    /// Settings as an earlier launch left them.
    void keep(bool enabled, const std::string& interfaceUID) {
        machine.defaults.set("dawMode.enabled", enabled);
        machine.defaults.set("dawMode.interfaceUID", interfaceUID);
    }

    AudioObjectID addInterface(const std::string& interfaceUID) {
        return machine.sound.addDevice(
            {.uid = interfaceUID, .name = "Interface " + interfaceUID, .outputs = {4}});
    }

    [[nodiscard]] std::optional<AudioObjectID> aggregate() {
        return findDevice(machine.devices, uid);
    }
    [[nodiscard]] std::size_t builds() const { return machine.sound.createdSinks().size(); }
    [[nodiscard]] std::size_t aggregates() const { return machine.sound.census().sinks; }
    /// The interface of the device that was built last.
    [[nodiscard]] std::string lastMaster() const {
        return machine.sound.createdSinks().back().masterUID;
    }

    SimulatedPlatform machine;
    AudioObjectID speakers = machine.addSpeakers();
    AudioObjectID microphone = machine.addVirtualMic();
};

TEST_F(DAWModeManagerTest, StartsOffWithNothingChosenAndKeepsThat) {
    const DAWModeManager manager(machine.platform());

    EXPECT_FALSE(manager.enabled());
    EXPECT_EQ(manager.interfaceUID(), std::nullopt);
    EXPECT_EQ(manager.lastError(), std::nullopt);
    EXPECT_EQ(manager.aggregateID(), 0U);
    EXPECT_EQ(machine.defaults.read<bool>("dawMode.enabled"), false);
    EXPECT_EQ(machine.defaults.get("dawMode.interfaceUID"), std::nullopt);
    EXPECT_EQ(builds(), 0U);
}

TEST_F(DAWModeManagerTest, EnablingChoosesAPhysicalDefaultOutputAndBuilds) {
    DAWModeManager manager(machine.platform());

    manager.setEnabled(true);

    EXPECT_EQ(manager.interfaceUID(), "speakers");
    EXPECT_EQ(machine.defaults.read<std::string>("dawMode.interfaceUID"), "speakers");
    EXPECT_EQ(machine.defaults.read<bool>("dawMode.enabled"), true);
    EXPECT_EQ(manager.aggregateID(), aggregate());
    EXPECT_EQ(manager.lastError(), std::nullopt);
    EXPECT_EQ(builds(), 1U);
}

TEST_F(DAWModeManagerTest, BuildsAPublicSinkWhoseClockIsTheInterface) {
    DAWModeManager manager(machine.platform());

    manager.setEnabled(true);

    EXPECT_EQ(machine.sound.createdSinks().back(),
              (PublicSink{.name = "Velmora DAW",
                          .uid = uid,
                          .masterUID = "speakers",
                          .followerUID = "velmora_mic"}));
}

TEST_F(DAWModeManagerTest, CarriesTheSameSoundToTheInterfaceAndTheMicrophone) {
    DAWModeManager manager(machine.platform());
    manager.setEnabled(true);
    machine.sound.setDefaultOutput(manager.aggregateID());
    machine.startApplication(4711, "Workstation", "org.workstation");

    machine.sound.play(4711, stereo(constant(0.25F), constant(0.5F)));
    machine.advanceCycles(2);

    EXPECT_FLOAT_EQ(machine.sound.heard(speakers, 1).back(), 0.25F);
    EXPECT_EQ(machine.sound.heard(speakers, 1), machine.sound.heard(microphone, 1));
    EXPECT_EQ(machine.sound.heard(speakers, 2), machine.sound.heard(microphone, 2));
}

TEST_F(DAWModeManagerTest, NeverChoosesAVirtualDefaultOutput) {
    machine.sound.setDefaultOutput(microphone);
    DAWModeManager manager(machine.platform());

    manager.setEnabled(true);

    EXPECT_TRUE(manager.enabled());
    EXPECT_EQ(manager.interfaceUID(), std::nullopt);
    EXPECT_EQ(manager.lastError(), std::nullopt);
    EXPECT_EQ(builds(), 0U);
}

TEST_F(DAWModeManagerTest, NeverChoosesAnAggregateAsTheDefaultOutput) {
    machine.sound.setDefaultOutput(machine.sound.addDevice(
        {.uid = "both", .name = "Both", .outputs = {2}, .transport = Transport::aggregate}));
    DAWModeManager manager(machine.platform());

    manager.setEnabled(true);

    EXPECT_EQ(manager.interfaceUID(), std::nullopt);
    EXPECT_EQ(builds(), 0U);
}

TEST_F(DAWModeManagerTest, ChoosesADefaultOutputWhoseTransportCannotBeRead) {
    machine.sound.refuse(Operation::transport);
    DAWModeManager manager(machine.platform());

    manager.setEnabled(true);

    EXPECT_EQ(manager.interfaceUID(), "speakers");
    EXPECT_EQ(builds(), 1U);
}

TEST_F(DAWModeManagerTest, ChoosesNothingWhenTheDefaultOutputOrItsUIDCannotBeRead) {
    for (const Operation unreadable : {Operation::defaultOutputDevice, Operation::deviceUID}) {
        machine.sound.refuse(unreadable);
        DAWModeManager manager(machine.platform());

        manager.setEnabled(true);

        EXPECT_EQ(manager.interfaceUID(), std::nullopt);
        EXPECT_EQ(manager.lastError(), std::nullopt);
        EXPECT_EQ(builds(), 0U);
        machine.sound.allow(unreadable);
        manager.setEnabled(false);
    }
}

TEST_F(DAWModeManagerTest, KeepsAnInterfaceThatWasChosenBefore) {
    addInterface("stage");
    DAWModeManager manager(machine.platform());
    manager.setInterfaceUID("stage");
    EXPECT_EQ(builds(), 0U); // not while the mode is off

    manager.setEnabled(true);

    EXPECT_EQ(manager.interfaceUID(), "stage");
    EXPECT_EQ(lastMaster(), "stage");
}

TEST_F(DAWModeManagerTest, DisablingRemovesTheDeviceAndKeepsTheInterface) {
    DAWModeManager manager(machine.platform());
    manager.setEnabled(true);

    manager.setEnabled(false);

    EXPECT_EQ(aggregate(), std::nullopt);
    EXPECT_EQ(aggregates(), 0U);
    EXPECT_EQ(manager.aggregateID(), 0U);
    EXPECT_EQ(manager.interfaceUID(), "speakers");
    EXPECT_EQ(machine.defaults.read<bool>("dawMode.enabled"), false);
}

TEST_F(DAWModeManagerTest, TheDeviceOutlivesTheManager) {
    {
        DAWModeManager manager(machine.platform());
        manager.setEnabled(true);
    }

    EXPECT_NE(aggregate(), std::nullopt);
}

TEST_F(DAWModeManagerTest, DisablingRemovesADeviceThatAnEarlierRunLeft) {
    ASSERT_TRUE(machine.sinks
                    .create({.name = "Velmora DAW",
                             .uid = uid,
                             .masterUID = "speakers",
                             .followerUID = "velmora_mic"})
                    .has_value());
    DAWModeManager manager(machine.platform());
    ASSERT_EQ(manager.aggregateID(), 0U);

    manager.setEnabled(false);

    EXPECT_EQ(aggregate(), std::nullopt);
    EXPECT_EQ(aggregates(), 0U);
}

TEST_F(DAWModeManagerTest, ALaterRunReplacesTheDeviceByBuildingItTwice) {
    {
        DAWModeManager earlier(machine.platform());
        earlier.setEnabled(true);
    }
    ASSERT_EQ(builds(), 1U);

    const DAWModeManager later(machine.platform());

    EXPECT_TRUE(later.enabled());
    EXPECT_EQ(later.interfaceUID(), "speakers");
    EXPECT_EQ(builds(), 3U);
    EXPECT_EQ(aggregates(), 1U);
    EXPECT_EQ(later.aggregateID(), aggregate());
}

TEST_F(DAWModeManagerTest, BuildsNothingAtStartWithoutAnInterface) {
    keep(true, "");

    const DAWModeManager manager(machine.platform());

    EXPECT_TRUE(manager.enabled());
    EXPECT_EQ(manager.lastError(), std::nullopt);
    EXPECT_EQ(builds(), 0U);
}

TEST_F(DAWModeManagerTest, AnotherInterfaceReplacesTheDevice) {
    addInterface("stage");
    DAWModeManager manager(machine.platform());
    manager.setEnabled(true);

    manager.setInterfaceUID("stage");

    EXPECT_EQ(lastMaster(), "stage");
    EXPECT_EQ(aggregates(), 1U);
    EXPECT_EQ(machine.defaults.read<std::string>("dawMode.interfaceUID"), "stage");
}

TEST_F(DAWModeManagerTest, ClearingTheInterfaceRemovesTheDeviceAndTheSetting) {
    DAWModeManager manager(machine.platform());
    manager.setEnabled(true);

    manager.setInterfaceUID(std::nullopt);

    EXPECT_TRUE(manager.enabled());
    EXPECT_EQ(aggregates(), 0U);
    EXPECT_EQ(machine.defaults.get("dawMode.interfaceUID"), std::nullopt);
}

TEST_F(DAWModeManagerTest, WithoutTheMicrophoneItSaysSoAndBuildsNothing) {
    machine.sound.removeDevice(microphone);
    DAWModeManager manager(machine.platform());

    manager.setEnabled(true);

    EXPECT_EQ(manager.lastError(), "Driver Velmora introuvable");
    EXPECT_EQ(builds(), 0U);
}

TEST_F(DAWModeManagerTest, NeverTakesItsOwnDeviceForTheMicrophone) {
    DAWModeManager manager(machine.platform());
    manager.setEnabled(true);
    machine.sound.removeDevice(microphone);

    manager.create();

    EXPECT_EQ(manager.lastError(), "Driver Velmora introuvable");
    EXPECT_EQ(aggregates(), 0U);
}

TEST_F(DAWModeManagerTest, SaysTheSameWhenTheMicrophonesUIDCannotBeRead) {
    machine.sound.refuse(Operation::deviceUID, -5, microphone);
    DAWModeManager manager(machine.platform());

    manager.setEnabled(true);

    EXPECT_EQ(manager.lastError(), "Driver Velmora introuvable");
    EXPECT_EQ(builds(), 0U);
}

TEST_F(DAWModeManagerTest, TellsARefusedDeviceWithItsStatus) {
    machine.sound.refuse(Operation::createSink, -19);
    DAWModeManager manager(machine.platform());

    manager.setEnabled(true);

    EXPECT_EQ(manager.lastError(), "Création du device DAW refusée (err -19)");
    EXPECT_EQ(manager.aggregateID(), 0U);
}

TEST_F(DAWModeManagerTest, ForgetsTheErrorWithTheNextBuildThatSucceedsAndNotBefore) {
    machine.sound.removeDevice(microphone);
    DAWModeManager manager(machine.platform());
    manager.setEnabled(true);

    manager.setInterfaceUID(std::nullopt); // nothing is built
    EXPECT_NE(manager.lastError(), std::nullopt);
    machine.addVirtualMic();
    manager.setInterfaceUID("speakers");

    EXPECT_EQ(manager.lastError(), std::nullopt);
    EXPECT_NE(aggregate(), std::nullopt);
}

TEST_F(DAWModeManagerTest, GoesOnWhenTheOldDeviceCannotBeDestroyed) {
    DAWModeManager manager(machine.platform());
    manager.setEnabled(true);
    machine.sound.refuse(Operation::removeSink);

    manager.setEnabled(false);

    EXPECT_EQ(manager.aggregateID(), 0U);
    EXPECT_EQ(manager.lastError(), std::nullopt);
}

TEST_F(DAWModeManagerTest, TellsObserversOnceWhenAnOperationIsComplete) {
    DAWModeManager manager(machine.platform());
    std::vector<bool> built;
    const auto connection =
        manager.changed().connect([&] { built.push_back(manager.aggregateID() != 0); });

    manager.setEnabled(true);
    manager.create();
    manager.setInterfaceUID(std::nullopt);
    manager.setEnabled(false);

    EXPECT_THAT(built, ElementsAre(true, true, false, false));
}

// -- members that come late --

class LateDAWMode : public DAWModeManagerTest {
protected:
    LateDAWMode() {
        keep(true, "studio");
        machine.sound.removeDevice(microphone);
    }
    void settle() { machine.advance(std::chrono::milliseconds{10}); }
};

TEST_F(LateDAWMode, IsBuiltAsSoonAsBothMembersAreThere) {
    DAWModeManager manager(machine.platform());
    EXPECT_EQ(manager.lastError(), "Driver Velmora introuvable");

    addInterface("studio");
    settle();
    EXPECT_EQ(builds(), 0U);
    int told = 0;
    const auto connection = manager.changed().connect([&] { ++told; });
    machine.addVirtualMic();
    settle();

    EXPECT_EQ(builds(), 1U);
    EXPECT_EQ(manager.lastError(), std::nullopt);
    EXPECT_EQ(manager.aggregateID(), aggregate());
    EXPECT_EQ(told, 1);
}

TEST_F(LateDAWMode, IsBuiltAgainWhenTheServiceComesBackWithoutIt) {
    machine.addVirtualMic();
    const AudioObjectID studio = addInterface("studio");
    DAWModeManager manager(machine.platform());
    const auto before = builds();
    machine.sound.loseService();
    machine.sound.removeDevice(manager.aggregateID());
    machine.sound.removeDevice(studio);
    settle();

    machine.sound.returnService();
    settle();
    EXPECT_EQ(builds(), before);
    addInterface("studio");
    settle();

    EXPECT_EQ(builds(), before + 1);
    EXPECT_TRUE(aggregate());
}

TEST_F(LateDAWMode, StaysAsItIsWhileItsInterfaceIsPluggedAnew) {
    machine.addVirtualMic();
    const AudioObjectID studio = addInterface("studio");
    DAWModeManager manager(machine.platform());
    const auto before = builds();

    machine.sound.removeDevice(studio);
    settle();
    addInterface("studio");
    settle();

    EXPECT_EQ(builds(), before);
    EXPECT_TRUE(aggregate());
}

TEST_F(LateDAWMode, IsNotTriedAgainAndAgainWhereItIsRefused) {
    DAWModeManager manager(machine.platform());
    machine.sound.refuse(Operation::createSink, -5);
    const AudioObjectID studio = addInterface("studio");
    machine.addVirtualMic();
    settle();
    ASSERT_EQ(manager.lastError(), "Création du device DAW refusée (err -5)");
    const auto attempts = machine.sound.refusalsGiven(Operation::createSink);

    for (int other = 0; other < 5; ++other) {
        addInterface("other" + std::to_string(other));
        settle();
    }
    EXPECT_EQ(machine.sound.refusalsGiven(Operation::createSink), attempts);

    machine.sound.allow(Operation::createSink);
    machine.sound.removeDevice(studio); // plugged anew
    settle();
    addInterface("studio");
    settle();
    EXPECT_EQ(manager.lastError(), std::nullopt);
    EXPECT_TRUE(aggregate());
}

TEST_F(LateDAWMode, SaysNothingOnceTheModeIsOff) {
    DAWModeManager manager(machine.platform());
    ASSERT_NE(manager.lastError(), std::nullopt);

    manager.setEnabled(false);

    EXPECT_EQ(manager.lastError(), std::nullopt);
}

TEST_F(LateDAWMode, IsLeftAloneOnceTheModeIsOff) {
    DAWModeManager manager(machine.platform());
    manager.setEnabled(false);

    addInterface("studio");
    machine.addVirtualMic();
    settle();

    EXPECT_EQ(builds(), 0U);
}

} // namespace
} // namespace velmora
