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

TEST_F(PresetRecallTest, AnApplicationThatIsHeldTwiceIsTwoInstances) {
    machine_.startApplication(40, "Player", "org.example.player");
    machine_.startApplication(30, "Player", "org.example.player");

    apply({app("Left", "org.example.player", 0.5F), app("Right", "org.example.player", 0.25F)},
          chosen);

    const AudioSource left = AppSource{40, "Left", "org.example.player"};
    const AudioSource right = AppSource{30, "Right", "org.example.player"};
    EXPECT_THAT(engine_.sources(), ElementsAre(left, right));
    EXPECT_EQ(engine_.gain(left), 0.5F);
    EXPECT_EQ(engine_.gain(right), 0.25F);
    EXPECT_EQ(engine_.lastError(), std::nullopt);
}

TEST_F(PresetRecallTest, OfAnApplicationThatIsHeldTwiceAndRunsOnceTheSecondIsMissing) {
    install("Player", "org.example.player", 50);
    machine_.startApplication(40, "Player", "org.example.player");

    apply({app("Left", "org.example.player"), app("Right", "org.example.player")}, chosen);
    machine_.advance(3s);

    EXPECT_THAT(engine_.sources(),
                ElementsAre(AudioSource(AppSource{40, "Left", "org.example.player"})));
    EXPECT_EQ(engine_.lastError(), "Introuvable : Right");
    EXPECT_THAT(machine_.applications.launched(), IsEmpty());

    // The first one being there, or another source joining, does not make up for it.
    engine_.add(AppSource{60, "Radio", "org.example.radio"});
    EXPECT_EQ(engine_.lastError(), "Introuvable : Right");
    engine_.add(AppSource{41, "Player", "org.example.player"});
    EXPECT_EQ(engine_.lastError(), std::nullopt);
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

TEST_F(PresetRecallTest, MissingNamesAreListedInPresetOrder) {
    apply({device("Micro", "a"), app("Player", "org.example.player"), device("Clavier", "b")},
          chosen);

    EXPECT_EQ(engine_.lastError(), "Introuvable : Micro, Player, Clavier");
}

TEST_F(PresetRecallTest, WithNothingMissingWhatWasToldBeforeIsCleared) {
    engine_.tell(ProblemOrigin::launch, {earlierTrouble});
    engine_.start();
    ASSERT_EQ(engine_.problems().size(), 2U);

    apply({}, chosen);

    EXPECT_EQ(engine_.lastError(), std::nullopt);
}

TEST_F(PresetRecallTest, QuietLeavesWhatWasToldAlone) {
    engine_.tell(ProblemOrigin::launch, {earlierTrouble});

    apply({device("Micro", "a")}, restored);
    EXPECT_THAT(engine_.problems(), ElementsAre(earlierTrouble));

    apply({}, restored);
    EXPECT_THAT(engine_.problems(), ElementsAre(earlierTrouble));
}

TEST_F(PresetRecallTest, AppliedAgainItSaysAgainWhatIsMissing) {
    apply({device("Micro", "a")}, chosen);
    engine_.dismissProblems();
    ASSERT_EQ(engine_.lastError(), std::nullopt);

    apply({device("Micro", "a")}, chosen);

    EXPECT_EQ(engine_.lastError(), "Introuvable : Micro");
}

TEST_F(PresetRecallTest, WhatWasMissingIsNoLongerToldWhenItHasJoined) {
    apply({device("Micro", "a"),
           channels("Pair", "a"),
           app("Game", "org.example.game"),
           device("Other", "b")},
          chosen);
    ASSERT_EQ(engine_.lastError(), "Introuvable : Micro, Pair, Game, Other");
    const auto plugged = plugIn("a", 70);

    engine_.add(DeviceSource{plugged, "Micro as it is called today"});
    EXPECT_EQ(engine_.lastError(), "Introuvable : Pair, Game, Other");
    engine_.add(DeviceChannelsSource{plugged, 3, 2, "Pair"});
    EXPECT_EQ(engine_.lastError(), "Introuvable : Game, Other");
    engine_.setPrimary(AppSource{20, "Game", "org.example.game"});
    EXPECT_EQ(engine_.lastError(), "Introuvable : Other");
    engine_.dismissProblems();
    EXPECT_EQ(engine_.lastError(), std::nullopt);
}

TEST_F(PresetRecallTest, OtherChannelsOfADeviceAreNotWhatWasMissing) {
    apply({channels("Pair", "a")}, chosen);
    const auto plugged = plugIn("a", 70);

    engine_.add(DeviceChannelsSource{plugged, 3, 1, "Pair"});
    engine_.add(DeviceChannelsSource{plugged, 1, 2, "Pair"});

    EXPECT_EQ(engine_.lastError(), "Introuvable : Pair");
}

TEST_F(PresetRecallTest, ApplicationsWithoutAnIdentifierAreNotTakenForEachOther) {
    apply({app("Empty", "")}, chosen);

    engine_.add(AppSource{20, "Other", ""});

    EXPECT_EQ(engine_.lastError(), "Introuvable : Empty");
}

TEST_F(PresetRecallTest, WhatWasMissingIsNoLongerToldHoweverItJoins) {
    apply({device("Micro", "a"), app("Game", "org.example.game")}, chosen);
    const AudioSource microphone = DeviceSource{plugIn("a", 70), "Micro"};

    engine_.replaceSources({microphone});
    EXPECT_EQ(engine_.lastError(), "Introuvable : Game");
    engine_.insertSource(AppSource{20, "Game", "org.example.game"}, 0);

    EXPECT_EQ(engine_.lastError(), std::nullopt);
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

TEST_F(RunningRecallTest, TheListOfTheMissingOutlastsLaterRestarts) {
    startPlayer(20, "org.example.player", 0.25F);
    startPlayer(21, "org.example.game", 0.5F);
    apply({app("Player", "org.example.player")}, chosen);
    engine_.start();
    apply({app("Player", "org.example.player"), device("Micro", "gone")}, chosen);

    engine_.add(AppSource{21, "Game", "org.example.game"});
    EXPECT_EQ(engine_.lastError(), "Introuvable : Micro");
    engine_.stop();
    EXPECT_EQ(engine_.lastError(), "Introuvable : Micro");
    engine_.start();
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

TEST_F(RunningRecallTest, ThePreviousMixIsNeverHeardAtTheVolumesOfASetupOfWhichNothingExists) {
    startPlayer(20, "org.example.player", 0.25F);
    apply({app("Player", "org.example.player")}, chosen);
    engine_.start();
    engine_.setHeadphoneVolume(0.0F);
    bool wasHeard = false;
    const auto connection = engine_.changed().connect(
        [&] { wasHeard = wasHeard || (engine_.isRunning() && engine_.headphoneVolume() > 0.0F); });

    apply({device("Micro", "gone")}, chosen);

    EXPECT_EQ(engine_.headphoneVolume(), 1.0F);
    EXPECT_FALSE(wasHeard);
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

TEST_F(RunningRecallTest, AMixThatTheUserSwitchedOffStaysOffWhateverIsStillComingUp) {
    startPlayer(20, "org.example.player", 0.25F);
    install("Game", "org.example.game", 21, 2s);
    install("Radio", "org.example.radio", 22, 4s);
    apply({app("Player", "org.example.player")}, chosen);
    engine_.start();
    apply({app("Game", "org.example.game"), app("Radio", "org.example.radio")}, chosen);
    engine_.add(AppSource{20, "Player", "org.example.player"});
    engine_.start();
    ASSERT_TRUE(engine_.isRunning());

    engine_.stop();
    machine_.advance(10s);

    EXPECT_FALSE(engine_.isRunning());
    EXPECT_EQ(engine_.sources().size(), 3U);
}

TEST_F(RunningRecallTest, APausedMixThatWentOnIsNotStartedByTheNextLaunch) {
    startPlayer(20, "org.example.player", 0.25F);
    install("Game", "org.example.game", 21, 1s);
    install("Radio", "org.example.radio", 22, 4s);
    apply({app("Player", "org.example.player")}, chosen);
    engine_.start();
    apply({app("Game", "org.example.game"), app("Radio", "org.example.radio")}, chosen);
    machine_.advance(2s);
    machine_.sound.play(21, constant(0.125F));
    machine_.advance(1s);
    ASSERT_TRUE(engine_.isRunning());

    engine_.stop();
    machine_.advance(10s);

    EXPECT_FALSE(engine_.isRunning());
}

TEST_F(RunningRecallTest, AMixThatTheUserStopsDuringALaunchIsNotStartedByIt) {
    startPlayer(20, "org.example.player", 0.25F);
    install("Game", "org.example.game", 21);
    apply({app("Player", "org.example.player")}, chosen);
    engine_.start();
    apply({app("Player", "org.example.player"), app("Game", "org.example.game")}, chosen);

    engine_.stop();
    machine_.sound.play(21, constant(0.125F));
    machine_.advance(2s);

    EXPECT_FALSE(engine_.isRunning());
    EXPECT_EQ(engine_.sources().size(), 2U);
}

TEST_F(RunningRecallTest, AnotherPresetWhileTheMixIsPausedGoesOnAsIfItHadRun) {
    startPlayer(20, "org.example.player", 0.25F);
    install("Game", "org.example.game", 21, 5s);
    apply({app("Player", "org.example.player")}, chosen);
    engine_.start();
    apply({app("Game", "org.example.game")}, chosen);
    ASSERT_FALSE(engine_.isRunning());

    apply({app("Player", "org.example.player")}, chosen);

    EXPECT_TRUE(engine_.isRunning());
    EXPECT_FLOAT_EQ(heard(), 0.25F);
}

TEST_F(RunningRecallTest, APausedMixGoesOnWithTheFirstLaunchedApplicationThatCanBeHeard) {
    startPlayer(20, "org.example.player", 0.25F);
    install("Game", "org.example.game", 21);
    install("Radio", "org.example.radio", 22, 2s);
    apply({app("Player", "org.example.player")}, chosen);
    engine_.start();
    apply({app("Game", "org.example.game"), app("Radio", "org.example.radio")}, chosen);
    machine_.advance(2s); // the game has joined, but has no sound
    ASSERT_FALSE(engine_.isRunning());

    machine_.sound.play(22, constant(0.125F));
    machine_.advance(2s);

    EXPECT_TRUE(engine_.isRunning());
    EXPECT_FLOAT_EQ(heard(), 0.125F);
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

class RestoredSetup : public RunningRecallTest {
protected:
    /// A setup of four devices, of which only the third is there at login.
    RestoredSetup() {
        plugIn("c", 73);
        PresetStore store(machine_.defaults);
        auto second = device("B", "b");
        second.gain = 0.5F;
        second.fx = FXParams{.tilt = 0.25F};
        store.save({.id = Uuid::random(),
                    .name = "setup",
                    .sources = {device("A", "a"), second, device("C", "c"), channels("D", "d")}});
        store.restoreActive(*recall_);
    }
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> names;
        for (const AudioSource& source : engine_.sources()) {
            names.push_back(source.name());
        }
        return names;
    }
};

TEST_F(RestoredSetup, ADeviceThatComesLateJoinsAtItsPlaceWithItsSettings) {
    ASSERT_THAT(names(), ElementsAre("C"));

    plugIn("d", 74);
    machine_.advance(10s);
    EXPECT_THAT(names(), ElementsAre("C", "D"));
    plugIn("b", 72);
    machine_.advance(10s);
    EXPECT_THAT(names(), ElementsAre("B", "C", "D"));
    plugIn("a", 71);
    machine_.advance(10s);

    EXPECT_THAT(names(), ElementsAre("A", "B", "C", "D"));
    EXPECT_EQ(engine_.gain(DeviceSource{72, "B"}), 0.5F);
    EXPECT_EQ(engine_.fx(DeviceSource{72, "B"}), (FXParams{.tilt = 0.25F}));
    EXPECT_EQ(engine_.lastError(), std::nullopt);
    EXPECT_EQ(machine_.mainQueue.timerCount(), 0U);
}

TEST_F(RestoredSetup, ALateDeviceJoinsBehindAnEarlierOneThatCameLateItself) {
    plugIn("a", 71);
    machine_.advance(1s);
    plugIn("b", 72);
    machine_.advance(1s);

    EXPECT_THAT(names(), ElementsAre("A", "B", "C"));
}

TEST_F(RestoredSetup, ADeviceThatComesLateIsHeardInAMixThatRuns) {
    engine_.start();
    machine_.sound.setInput(plugIn("a", 71), constant(0.5F));
    machine_.advance(100ms);

    EXPECT_FLOAT_EQ(heard(), 0.5F);
}

TEST_F(RestoredSetup, WaitsForAMinute) {
    machine_.advance(59s);
    plugIn("a", 71);
    machine_.advance(900ms);
    ASSERT_THAT(names(), ElementsAre("A", "C"));

    machine_.advance(200ms);
    plugIn("b", 72);
    machine_.advance(10s);

    EXPECT_THAT(names(), ElementsAre("A", "C"));
}

TEST_F(RestoredSetup, LeavesAListThatTheUserHasEditedAlone) {
    const AudioSource other = DeviceSource{99, "Other"};
    engine_.add(other);
    engine_.remove(other);

    plugIn("a", 71);
    machine_.advance(1s);

    EXPECT_THAT(names(), ElementsAre("C"));
}

TEST_F(RestoredSetup, IsForgottenForAnotherPreset) {
    apply({device("C", "c")}, chosen);

    plugIn("a", 71);
    machine_.advance(1s);

    EXPECT_THAT(names(), ElementsAre("C"));
}

TEST_F(RestoredSetup, ComesTogetherWhenTheAudioServiceAnswersLate) {
    machine_.sound.loseService();
    recall_.emplace(machine_.platform(), engine_);
    PresetStore store(machine_.defaults);
    store.restoreActive(*recall_);
    ASSERT_THAT(names(), IsEmpty());

    machine_.sound.returnService();
    machine_.advance(100ms);

    EXPECT_THAT(names(), ElementsAre("C"));
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
