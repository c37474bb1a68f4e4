#include "ui/control/SourceStripModel.h"

#include "ui/support/ModelFixture.h"

#include <QSignalSpy>
#include <limits>
#include <memory>

namespace velmora {
namespace {

using namespace std::chrono_literals;

class SourceStripModelTest : public ModelFixture {
protected:
    std::unique_ptr<SourceStripModel> strip(const AudioSource& source) {
        return std::make_unique<SourceStripModel>(machine.platform(), engine, source);
    }

    std::unique_ptr<SourceStripModel> model = strip(player);
    QSignalSpy gains{model.get(), &SourceStripModel::gainChanged};
    QSignalSpy levels{model.get(), &SourceStripModel::levelChanged};
};

TEST_F(SourceStripModelTest, AnApplicationShowsItsIcon) {
    EXPECT_EQ(model->sourceId(), "app-org.player-4711");
    EXPECT_EQ(model->name(), "Player");
    EXPECT_TRUE(model->isApplication());
    EXPECT_EQ(model->icon(), "image://application/player%20icon");
}

TEST_F(SourceStripModelTest, AnApplicationWithoutAnIconShowsASymbol) {
    const auto iconless = strip(browser);
    EXPECT_EQ(iconless->icon(), "");
    EXPECT_EQ(iconless->symbol(), "waveform");
}

TEST_F(SourceStripModelTest, ADeviceShowsHowItIsConnected) {
    const auto plugged = machine.sound.addDevice({.uid = "usb", .name = "USB", .inputs = {2}});
    const auto loopback = machine.sound.addDevice(
        {.uid = "loop", .name = "Loop", .inputs = {2}, .transport = Transport::virtualDevice});
    const auto bundle = machine.sound.addDevice(
        {.uid = "bundle", .name = "Bundle", .inputs = {2}, .transport = Transport::aggregate});
    EXPECT_EQ(strip(DeviceSource{plugged, "USB"})->symbol(), "mic");
    EXPECT_EQ(strip(DeviceSource{loopback, "Loop"})->symbol(), "waveform");
    EXPECT_EQ(strip(DeviceChannelsSource{bundle, 1, 1, "Bundle 1"})->symbol(), "waveform");
    EXPECT_FALSE(strip(DeviceSource{plugged, "USB"})->isApplication());
}

TEST_F(SourceStripModelTest, ADeviceThatDoesNotAnswerIsAMicrophone) {
    EXPECT_EQ(strip(DeviceSource{999, "Gone"})->symbol(), "mic");
}

TEST_F(SourceStripModelTest, AGainChangeIsToldOnce) {
    model->setGain(0.5);
    EXPECT_EQ(engine.gain(player), 0.5F);
    EXPECT_EQ(model->gain(), 0.5);
    EXPECT_EQ(gains.count(), 1);
    model->setGain(0.5);
    EXPECT_EQ(gains.count(), 1);
}

TEST_F(SourceStripModelTest, IgnoresAnotherSourcesGain) {
    engine.setGain(0.5F, browser);
    EXPECT_EQ(gains.count(), 0);
}

TEST_F(SourceStripModelTest, WhatIsNoGainIsNotTaken) {
    model->setGain(-0.5);
    model->setGain(std::numeric_limits<double>::infinity());
    EXPECT_EQ(engine.gain(player), 1.0F);
}

TEST_F(SourceStripModelTest, MutingKeepsTheGainUnderTheSourcesKey) {
    engine.setGain(0.5F, player);
    model->toggleMute();
    EXPECT_TRUE(model->muted());
    EXPECT_EQ(engine.gain(player), 0.0F);
    EXPECT_EQ(machine.defaults.read<double>("sourceGain.premute.app-org.player-4711"), 0.5);
}

TEST_F(SourceStripModelTest, UnmutingRestoresTheGain) {
    engine.setGain(0.5F, player);
    model->toggleMute();
    model->toggleMute();
    EXPECT_EQ(model->gain(), 0.5);
    EXPECT_FALSE(model->muted());
}

TEST_F(SourceStripModelTest, UnmutingAfterARestartRestoresTheGain) {
    engine.setGain(0.5F, player);
    model->toggleMute();

    AudioEngine laterEngine(machine.platform()); // while the application goes on
    SourceStripModel again(machine.platform(), laterEngine, player);
    EXPECT_TRUE(again.muted());
    again.toggleMute();
    EXPECT_EQ(again.gain(), 0.5);
}

TEST_F(SourceStripModelTest, UnmutingAfterDraggingToSilenceGivesUnity) {
    model->setGain(0.0);
    model->toggleMute();
    EXPECT_EQ(model->gain(), 1.0);
}

TEST_F(SourceStripModelTest, DirectMuteIsTheEngines) {
    QSignalSpy mutes(model.get(), &SourceStripModel::directMutedChanged);
    model->setDirectMuted(true);
    EXPECT_TRUE(engine.isDirectMuted(player));
    EXPECT_TRUE(model->directMuted());
    EXPECT_EQ(mutes.count(), 1);
    model->setDirectMuted(true);
    EXPECT_EQ(mutes.count(), 1);
}

TEST_F(SourceStripModelTest, TheEffectsButtonIsMarkedWhileAnEffectIsSet) {
    QSignalSpy marks(model.get(), &SourceStripModel::fxActiveChanged);
    EXPECT_FALSE(model->fxActive());
    model->effects()->setLowcut(1);
    EXPECT_TRUE(model->fxActive());
    model->effects()->setTilt(0.5);
    EXPECT_EQ(marks.count(), 1);
}

TEST_F(SourceStripModelTest, ThePanelOpensAndClosesWithoutTouchingTheEngine) {
    QSignalSpy opened(model.get(), &SourceStripModel::fxOpenChanged);
    int engineChanges = 0;
    const auto connection = engine.changed().connect([&] { ++engineChanges; });
    model->setFxOpen(true);
    EXPECT_TRUE(model->fxOpen());
    EXPECT_EQ(opened.count(), 1);
    EXPECT_EQ(engineChanges, 0);
}

TEST_F(SourceStripModelTest, RemovalTakesTheSourceOutOfTheMix) {
    engine.replaceSources({player, browser});
    model->remove();
    EXPECT_EQ(engine.sources(), std::vector{browser});
}

TEST_F(SourceStripModelTest, LevelsAreToldOnlyWhileTheyAreFollowed) {
    machine.sound.play(4711, constant(0.5F));
    engine.add(player);
    engine.start();
    machine.advance(200ms);
    EXPECT_EQ(levels.count(), 0);

    model->setFollowsLevel(true);
    EXPECT_EQ(levels.count(), 1);
    EXPECT_FLOAT_EQ(static_cast<float>(model->level()),
                    engine.sourceLevels().at("app-org.player-4711"));

    model->setFollowsLevel(false);
    machine.sound.play(4711, constant(0.25F));
    machine.advance(200ms);
    EXPECT_EQ(levels.count(), 1);
}

TEST_F(SourceStripModelTest, ASourceThatDoesNotRunHasNoLevel) {
    model->setFollowsLevel(true);
    EXPECT_EQ(model->level(), 0.0);
    EXPECT_EQ(levels.count(), 0);
}

class SourceStripSound : public SourceStripModelTest {
protected:
    SourceStripSound() { machine.sound.play(4711, constant(0.25F)); }

    void sounds(const ApplicationSound& sound) {
        machine.sound.setSound(4711, sound);
        machine.mainQueue.advance(0ms);
    }

    QSignalSpy told{model.get(), &SourceStripModel::soundChanged};
};

TEST_F(SourceStripSound, IsSilencedWhenThatIsWantedAndSo) {
    EXPECT_FALSE(model->silenced());
    EXPECT_TRUE(model->canMuteDirect());

    model->setDirectMuted(true);

    EXPECT_TRUE(model->silenced());
    EXPECT_EQ(model->notice(), "");
}

TEST_F(SourceStripSound, IsNotShownAsSilencedWhileItIsHeard) {
    model->setDirectMuted(true);
    told.clear();

    sounds({.isStillHeard = true});

    EXPECT_FALSE(model->silenced());
    EXPECT_TRUE(model->directMuted());
    EXPECT_EQ(model->notice(), "Cette app ne peut pas être coupée sur sa sortie directe.");
    EXPECT_EQ(told.count(), 1);

    sounds({});
    EXPECT_TRUE(model->silenced());
    EXPECT_EQ(model->notice(), "");
}

TEST_F(SourceStripSound, HasNoSwitchForAProgramThatChoosesItsOutputsItself) {
    sounds({.canBeMuted = false});
    EXPECT_FALSE(model->canMuteDirect());

    model->setDirectMuted(true);
    EXPECT_TRUE(model->canMuteDirect()) << "what was switched on before can be switched off";
}

TEST_F(SourceStripSound, SaysThatUndecodedSoundCannotBeMixed) {
    sounds({.isUndecoded = true});

    EXPECT_EQ(model->notice(),
              "Le son de cette app part sans être décodé : il ne peut pas être mixé.");
}

TEST_F(SourceStripModelTest, ABluetoothMicrophoneSaysWhatItDoesToPlayback) {
    const auto headset = machine.sound.addDevice(
        {.uid = "headset", .name = "Headset", .inputs = {1}, .isBluetooth = true});

    EXPECT_EQ(strip(DeviceSource{headset, "Headset"})->notice(),
              "Micro Bluetooth : la lecture passe en qualité d'appel.");
    EXPECT_EQ(strip(DeviceChannelsSource{headset, 1, 1, "Headset"})->notice(),
              "Micro Bluetooth : la lecture passe en qualité d'appel.");
}

TEST_F(SourceStripSound, IsThatOfADeviceNever) {
    const auto device = strip(DeviceSource{speakers, "Speakers"});

    EXPECT_FALSE(device->canMuteDirect());
    EXPECT_EQ(device->notice(), "");
}

class SourceStripEcho : public SourceStripSound {
protected:
    SourceStripEcho() {
        engine.add(player);
        engine.start();
        machine.advance(100ms);
    }
    void record() {
        machine.sound.record(4711, mic);
        machine.mainQueue.advance(0ms);
    }
};

TEST_F(SourceStripEcho, SaysThatTheApplicationHearsItselfAndTakesItOut) {
    EXPECT_EQ(model->notice(), "");

    record();

    EXPECT_EQ(model->notice(), "S'entend dans le micro");
    EXPECT_EQ(model->remedy(), "Retirer du mix");
    model->applyRemedy();
    EXPECT_TRUE(engine.sources().empty());
}

TEST_F(SourceStripEcho, SaysNothingOfWhatIsMutedOrOff) {
    record();
    engine.setGain(0.0F, player);
    EXPECT_EQ(model->notice(), "");

    engine.setGain(1.0F, player);
    EXPECT_EQ(model->notice(), "S'entend dans le micro");

    engine.stop();
    EXPECT_EQ(model->notice(), "");
    EXPECT_EQ(model->remedy(), "");
}

TEST_F(SourceStripEcho, SaysNothingOfAnotherWhoRecords) {
    machine.sound.record(4712, mic);
    machine.mainQueue.advance(0ms);

    EXPECT_EQ(model->notice(), "");
}

class SourceStripEnd : public SourceStripSound {
protected:
    SourceStripEnd() {
        engine.replaceSources({player});
        machine.advance(100ms);
    }
    void quitPlayer() {
        machine.quitApplication(4711);
        machine.advance(100ms);
    }

    QSignalSpy wanted{model.get(), &SourceStripModel::wantedBack};
};

TEST_F(SourceStripEnd, SaysThatTheApplicationHasEnded) {
    quitPlayer();

    EXPECT_EQ(model->notice(), "Cette app s'est fermée.");
    EXPECT_EQ(model->remedy(), "") << "nothing can be opened";
    EXPECT_TRUE(model->idle());
}

TEST_F(SourceStripEnd, OffersTheInstanceThatWasStartedAgain) {
    quitPlayer();

    machine.startApplication(6000, "Player", "org.player");
    machine.sound.play(6000, constant(0.25F));
    machine.advance(100ms);

    EXPECT_EQ(model->remedy(), "Reprendre");
    model->applyRemedy();
    EXPECT_EQ(wanted.count(), 1);
}

TEST_F(SourceStripEnd, OffersToOpenWhatIsInstalled) {
    machine.applications.install(
        {.bundleID = "org.player", .name = "Player", .location = "/apps/org.player.desktop"});
    quitPlayer();
    EXPECT_EQ(model->remedy(), "Relancer");

    model->setOpening(true);

    EXPECT_EQ(model->notice(), "Ouverture…");
    EXPECT_EQ(model->remedy(), "");
}

TEST_F(SourceStripEnd, ASilentApplicationsEndIsNoticedWhileItIsSeen) {
    machine.startApplication(6000, "Radio", "org.radio");
    const AudioSource radio = AppSource{6000, "Radio", "org.radio"};
    engine.add(radio);
    engine.start();
    const auto silent = strip(radio);
    silent->setFollowsLevel(true);
    EXPECT_EQ(silent->notice(), "Attend que cette app joue.");

    machine.applications.quit(6000);
    machine.advance(6s);

    EXPECT_EQ(silent->notice(), "Cette app s'est fermée.");
}

TEST_F(SourceStripModelTest, SaysThatADeviceIsUnpluggedAndThatItsInputFailed) {
    const auto id = machine.sound.addDevice({.uid = "usb", .name = "USB", .inputs = {2}});
    const auto input = strip(DeviceSource{id, "USB"});
    engine.replaceSources({player, DeviceSource{id, "USB"}});
    machine.sound.play(4711, constant(0.25F));
    machine.sound.refuse(Operation::startInput);
    engine.start();
    EXPECT_EQ(input->notice(), "N'a pas pu démarrer.");

    machine.sound.removeDevice(id);
    machine.advance(100ms);

    EXPECT_EQ(input->notice(), "Débranché : reprend dès son retour.");
}

TEST_F(SourceStripModelTest, SaysThatItsEffectsAreBypassed) {
    QSignalSpy bypasses(model.get(), &SourceStripModel::fxBypassedChanged);
    engine.setFxBypassed(true);
    EXPECT_TRUE(model->fxBypassed());
    EXPECT_EQ(bypasses.count(), 1);
}

} // namespace
} // namespace velmora
