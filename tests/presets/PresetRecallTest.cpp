#include "presets/PresetRecall.h"

#include "presets/PresetStore.h"
#include "presets/RecallFixture.h"

#include <gmock/gmock.h>

namespace velmora {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

using PresetRecallTest = RecallFixture;

// -- looking sources up --

TEST_F(PresetRecallTest, AnApplicationIsFoundByItsIdentifierUnderItsNewProcess) {
    machine_.startApplication(20, "Player (renamed)", "org.example.player");

    apply({app("Player", "org.example.player", 0.5F)}, restored);

    const AudioSource source = AppSource{20, "Player", "org.example.player"};
    EXPECT_THAT(engine_.sources(), ElementsAre(source));
    EXPECT_EQ(engine_.gain(source), 0.5F);
}

TEST_F(PresetRecallTest, OfTwoRunningInstancesTheFirstIsTaken) {
    machine_.startApplication(40, "Player", "org.example.player");
    machine_.startApplication(30, "Player", "org.example.player");

    apply({app("Player", "org.example.player")}, restored);

    EXPECT_THAT(engine_.sources(),
                ElementsAre(AudioSource(AppSource{40, "Player", "org.example.player"})));
}

TEST_F(PresetRecallTest, AnApplicationWithoutAnIdentifierIsMissing) {
    machine_.startApplication(20, "Player", "");

    apply({{.kind = PresetSource::Kind::app, .name = "Absent"}, app("Empty", "")}, chosen);

    EXPECT_THAT(engine_.sources(), IsEmpty());
    EXPECT_EQ(engine_.lastError(), "Introuvable : Absent, Empty");
}

TEST_F(PresetRecallTest, AnUnpluggedDeviceIsMissingAndFoundAgainUnderItsNewId) {
    const auto before = plugIn("usb-1", 70);
    apply({device("Interface", "usb-1")}, chosen);
    EXPECT_THAT(engine_.sources(), ElementsAre(AudioSource(DeviceSource{70, "Interface"})));

    machine_.sound.removeDevice(before);
    apply({device("Interface", "usb-1")}, chosen);
    EXPECT_THAT(engine_.sources(), IsEmpty());
    EXPECT_EQ(engine_.lastError(), "Introuvable : Interface");

    plugIn("usb-1", 90);
    apply({device("Interface", "usb-1")}, chosen);
    EXPECT_THAT(engine_.sources(), ElementsAre(AudioSource(DeviceSource{90, "Interface"})));
    EXPECT_EQ(engine_.lastError(), std::nullopt);
}

TEST_F(PresetRecallTest, OnlyTheExactUidNamesADevice) {
    plugIn("USB-1");
    plugIn("usb-10");

    apply({device("Interface", "usb-1")}, chosen);

    EXPECT_EQ(engine_.lastError(), "Introuvable : Interface");
}

TEST_F(PresetRecallTest, OfTwoDevicesWithOneUidTheFirstIsTaken) {
    plugIn("twin", 80);
    plugIn("twin", 60);

    apply({device("Interface", "twin")}, restored);

    EXPECT_THAT(engine_.sources(), ElementsAre(AudioSource(DeviceSource{80, "Interface"})));
}

TEST_F(PresetRecallTest, ChannelsOfADeviceComeBackWithTheirRange) {
    plugIn("usb-1", 70);

    apply({channels("Interface 3-4", "usb-1")}, restored);

    EXPECT_THAT(engine_.sources(),
                ElementsAre(AudioSource(DeviceChannelsSource{70, 3, 2, "Interface 3-4"})));
}

TEST_F(PresetRecallTest, AnEntryThatLacksAKeyIsMissingEvenIfItsDeviceExists) {
    plugIn("usb-1");
    auto withoutFirst = channels("first", "usb-1");
    withoutFirst.first.reset();
    auto withoutCount = channels("count", "usb-1");
    withoutCount.count.reset();
    auto withoutUid = channels("uid", "usb-1");
    withoutUid.deviceUID.reset();
    auto deviceWithoutUid = device("device", "usb-1");
    deviceWithoutUid.deviceUID.reset();

    apply({withoutFirst, withoutCount, withoutUid, deviceWithoutUid}, chosen);

    EXPECT_THAT(engine_.sources(), IsEmpty());
    EXPECT_EQ(engine_.lastError(), "Introuvable : first, count, uid, device");
}

TEST_F(PresetRecallTest, AnApplicationsIdentifierDoesNotMakeADeviceEntryLaunchable) {
    install("Player", "org.example.player", 20);
    auto confused = device("Interface", "usb-1");
    confused.bundleID = "org.example.player";

    apply({confused}, chosen);
    machine_.advance(2s);

    EXPECT_THAT(engine_.sources(), IsEmpty());
    EXPECT_THAT(machine_.applications.launched(), IsEmpty());
    EXPECT_EQ(engine_.lastError(), "Introuvable : Interface");
}

// -- what the engine is given --

TEST_F(PresetRecallTest, SourcesComeInPresetOrderAndReplaceWhatWasThere) {
    machine_.startApplication(20, "Player", "org.example.player");
    machine_.startApplication(21, "Game", "org.example.game");
    plugIn("usb-1", 70);
    engine_.add(AppSource{21, "Game", "org.example.game"});

    apply({device("Interface", "usb-1"), app("Player", "org.example.player")}, restored);

    EXPECT_THAT(engine_.sources(),
                ElementsAre(AudioSource(DeviceSource{70, "Interface"}),
                            AudioSource(AppSource{20, "Player", "org.example.player"})));
}

TEST_F(PresetRecallTest, EffectsAreSetAndAbsentOnesTurnEffectsOff) {
    plugIn("usb-1", 70);
    plugIn("usb-2", 71);
    const AudioSource first = DeviceSource{70, "first"};
    const AudioSource second = DeviceSource{71, "second"};
    engine_.setFX({.comp = 3}, first);
    auto withFX = device("second", "usb-2");
    withFX.fx = FXParams{.tilt = 0.5F};

    apply({device("first", "usb-1"), withFX}, restored);

    EXPECT_EQ(engine_.storedFX(first), std::nullopt);
    EXPECT_EQ(engine_.storedFX(second), (FXParams{.tilt = 0.5F}));
}

TEST_F(PresetRecallTest, GainsAndVolumesAreKeptLikeTheUsersOwn) {
    plugIn("usb-1", 70);
    auto source = device("Interface", "usb-1");
    source.gain = 0.25F;

    recall_->apply({.id = Uuid::random(),
                    .name = "setup",
                    .sources = {source},
                    .headphoneVolume = 0.5F,
                    .streamVolume = 1.5F},
                   restored);

    const AudioEngine next(machine_.platform());
    EXPECT_EQ(next.gain(DeviceSource{70, "Interface"}), 0.25F);
    EXPECT_EQ(next.headphoneVolume(), 0.5F);
    EXPECT_EQ(next.streamVolume(), 1.5F);
}

TEST_F(PresetRecallTest, APresetInTheStoreMayChangeWhileItIsApplied) {
    plugIn("usb-1", 70);
    PresetStore store(machine_.defaults);
    store.save({.id = Uuid::random(),
                .name = "setup",
                .sources = {device("Interface", "usb-1")},
                .streamVolume = 0.5F});
    const auto meddler =
        engine_.changed().connect([&] { store.remove(store.activeID().value_or(Uuid{})); });

    recall_->apply(store.presets().front(), restored);

    EXPECT_EQ(engine_.streamVolume(), 0.5F);
    EXPECT_EQ(engine_.sources().size(), 1U);
}

// -- messages --

TEST_F(PresetRecallTest, MissingNamesAreListedInPresetOrderInEitherLanguage) {
    for (const auto* const language : {"fr", "en"}) {
        settings_.setLanguage(language);

        apply({device("Micro", "a"), app("Player", "org.example.player"), device("Clavier", "b")},
              chosen);

        EXPECT_EQ(engine_.lastError(), "Introuvable : Micro, Player, Clavier");
    }
}

TEST_F(PresetRecallTest, WithNothingMissingTheLastErrorIsCleared) {
    engine_.setLastError("earlier trouble");

    apply({}, chosen);

    EXPECT_EQ(engine_.lastError(), std::nullopt);
}

TEST_F(PresetRecallTest, QuietLeavesTheLastErrorAlone) {
    engine_.setLastError("earlier trouble");

    apply({device("Micro", "a")}, restored);
    EXPECT_EQ(engine_.lastError(), "earlier trouble");

    apply({}, restored);
    EXPECT_EQ(engine_.lastError(), "earlier trouble");
}

// -- running --

class RunningRecallTest : public RecallFixture {
protected:
    void startPlayer(std::int32_t pid, const std::string& bundleID, float level) {
        machine_.startApplication(pid, bundleID, bundleID);
        machine_.sound.play(pid, constant(level));
    }
    /// The virtual microphone's newest sample.
    [[nodiscard]] float heard() {
        machine_.sound.forgetHeard();
        machine_.advance(100ms);
        return machine_.sound.heard(mic_, 1).back();
    }

    AudioObjectID speakers_ = machine_.addSpeakers();
    AudioObjectID mic_ = machine_.addVirtualMic();
};

TEST_F(RunningRecallTest, AStoppedEngineStaysStopped) {
    startPlayer(20, "org.example.player", 0.25F);

    apply({app("Player", "org.example.player")}, chosen);
    machine_.advance(2s);

    EXPECT_FALSE(engine_.isRunning());
}

TEST_F(RunningRecallTest, ARunningEngineRestartsAndTheNewSetupIsHeard) {
    startPlayer(20, "org.example.player", 0.25F);
    startPlayer(21, "org.example.game", 0.5F);
    apply({app("Player", "org.example.player")}, chosen);
    engine_.start();
    ASSERT_FLOAT_EQ(heard(), 0.25F);

    apply({app("Game", "org.example.game", 0.25F)}, chosen);

    EXPECT_TRUE(engine_.isRunning());
    EXPECT_FLOAT_EQ(heard(), 0.5F * 0.25F);
}

TEST_F(RunningRecallTest, TheListOfTheMissingOutlastsTheRestart) {
    startPlayer(20, "org.example.player", 0.25F);
    apply({app("Player", "org.example.player")}, chosen);
    engine_.start();

    apply({app("Player", "org.example.player"), device("Micro", "gone")}, chosen);

    EXPECT_EQ(engine_.lastError(), "Introuvable : Micro");
}

TEST_F(RunningRecallTest, WhatTheRestartReportsComesBelowTheMissing) {
    startPlayer(20, "org.example.player", 0.25F);
    apply({app("Player", "org.example.player")}, chosen);
    engine_.start();
    machine_.startApplication(22, "Silent", "org.example.silent");

    apply({app("Player", "org.example.player"),
           app("Silent", "org.example.silent"),
           device("Micro", "gone")},
          chosen);

    EXPECT_EQ(engine_.lastError(),
              "Introuvable : Micro\n"
              "Silent : Cette app n'a pas encore de son — lance une lecture dedans, puis "
              "re-sélectionne-la.");
}

TEST_F(RunningRecallTest, ASetupOfWhichNothingExistsLeavesNothingOfThePreviousOneInTheMix) {
    startPlayer(20, "org.example.player", 0.25F);
    apply({app("Player", "org.example.player")}, chosen);
    engine_.start();

    apply({device("Micro", "gone")}, chosen);

    EXPECT_FALSE(engine_.isRunning());
    EXPECT_EQ(engine_.lastError(), "Introuvable : Micro");
}

TEST_F(RunningRecallTest, AMixWhoseSourcesAllHaveToBeLaunchedGoesOnWhenTheFirstIsUp) {
    startPlayer(20, "org.example.player", 0.25F);
    install("Game", "org.example.game", 21);
    apply({app("Player", "org.example.player")}, chosen);
    engine_.start();

    apply({app("Game", "org.example.game", 0.5F)}, chosen);
    EXPECT_FALSE(engine_.isRunning());
    machine_.sound.play(21, constant(0.125F));
    machine_.advance(1500ms);

    EXPECT_TRUE(engine_.isRunning());
    EXPECT_FLOAT_EQ(heard(), 0.125F * 0.5F);
}

TEST_F(RunningRecallTest, AStoppedMixIsNotStartedByALaunchedApplication) {
    install("Game", "org.example.game", 21);

    apply({app("Game", "org.example.game")}, chosen);
    machine_.sound.play(21, constant(0.125F));
    machine_.advance(1500ms);

    EXPECT_FALSE(engine_.isRunning());
    EXPECT_EQ(engine_.sources().size(), 1U);
}

TEST_F(RunningRecallTest, ALaunchedApplicationIsHeardOnceItHasJoined) {
    startPlayer(20, "org.example.player", 0.25F);
    install("Game", "org.example.game", 21);
    apply({app("Player", "org.example.player")}, chosen);
    engine_.start();

    apply({app("Game", "org.example.game", 0.5F), app("Player", "org.example.player")}, chosen);
    EXPECT_FLOAT_EQ(heard(), 0.25F);
    machine_.sound.play(21, constant(0.125F));
    machine_.advance(1500ms);

    EXPECT_FLOAT_EQ(heard(), 0.25F + 0.125F * 0.5F);
}

// -- start-up --

TEST_F(PresetRecallTest, TheStartUpRestoreAppliesTheActivePresetOnce) {
    plugIn("usb-1", 70);
    PresetStore store(machine_.defaults);
    store.save({.id = Uuid::random(),
                .name = "setup",
                .sources = {device("Interface", "usb-1")},
                .streamVolume = 0.5F});

    store.restoreActive(*recall_);
    EXPECT_TRUE(store.didRestore());
    EXPECT_THAT(engine_.sources(), ElementsAre(AudioSource(DeviceSource{70, "Interface"})));
    EXPECT_EQ(engine_.streamVolume(), 0.5F);

    engine_.setStreamVolume(0.75F);
    store.restoreActive(*recall_);
    EXPECT_EQ(engine_.streamVolume(), 0.75F);
}

TEST_F(PresetRecallTest, TheStartUpRestoreLaunchesNothingAndSaysNothing) {
    install("Player", "org.example.player", 20);
    PresetStore store(machine_.defaults);
    store.save({.id = Uuid::random(),
                .name = "setup",
                .sources = {app("Player", "org.example.player"), device("Micro", "gone")}});

    store.restoreActive(*recall_);
    machine_.advance(2s);

    EXPECT_THAT(machine_.applications.launched(), IsEmpty());
    EXPECT_THAT(engine_.sources(), IsEmpty());
    EXPECT_EQ(engine_.lastError(), std::nullopt);
}

TEST_F(PresetRecallTest, TheStartUpRestoreCountsEvenWithoutAnActivePreset) {
    plugIn("usb-1");
    PresetStore store(machine_.defaults);

    store.restoreActive(*recall_);
    store.save({.id = Uuid::random(), .name = "later", .sources = {device("Interface", "usb-1")}});
    store.restoreActive(*recall_);

    EXPECT_TRUE(store.didRestore());
    EXPECT_THAT(engine_.sources(), IsEmpty());
}

} // namespace
} // namespace velmora
