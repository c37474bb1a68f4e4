#include "engine/EngineFixture.h"

#include <gmock/gmock.h>
#include <limits>

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AudioEngineControl : public EngineFixture {
protected:
    static FXParams manualGain(float db) {
        FXParams params;
        params.autoGain = false;
        params.manualDB = db;
        return params;
    }

    /// How many notifications `action` causes.
    template <typename Action>
    int notifications(Action action) {
        int told = 0;
        const auto connection = engine.changed().connect([&] { ++told; });
        action();
        return told;
    }
};

TEST_F(AudioEngineControl, BeginsStoppedAndEmpty) {
    EXPECT_FALSE(engine.isRunning());
    EXPECT_EQ(engine.level(), 0.0F);
    EXPECT_THAT(engine.sourceLevels(), IsEmpty());
    EXPECT_THAT(engine.sources(), IsEmpty());
    EXPECT_EQ(engine.lastError(), std::nullopt);
    EXPECT_FALSE(engine.fxBypassed());
    EXPECT_EQ(engine.headphoneVolume(), 1.0F);
    EXPECT_EQ(engine.streamVolume(), 1.0F);
    EXPECT_EQ(engine.monitoringSelection(), std::nullopt);
    EXPECT_FALSE(engine.anyFXActive());
    EXPECT_THAT(engine.statistics(), IsEmpty());
}

// -- gain --

TEST_F(AudioEngineControl, KeepsTheGainOfASourceThatDoesNotRun) {
    EXPECT_EQ(engine.gain(player), 1.0F);
    EXPECT_EQ(engine.storedGain(player), std::nullopt);

    engine.setGain(0.5F, player);

    EXPECT_EQ(engine.gain(player), 0.5F);
    EXPECT_EQ(engine.storedGain(player), 0.5F);
    EXPECT_EQ(machine.defaults.read<NumberMap>("sourceGains"),
              (NumberMap{{"app-org.player-4711", 0.5}}));
    EXPECT_EQ(machine.sound.census(), nothingRuns);
}

TEST_F(AudioEngineControl, HearsAGainAtTheNextBlock) {
    startWith({player, browser});
    EXPECT_EQ(nextInMic(), 0.375F);

    engine.setGain(2.0F, player);

    EXPECT_EQ(nextInMic(), 0.625F);
    EXPECT_EQ(nextMonitored(), 0.625F);
}

TEST_F(AudioEngineControl, KeysSettingsByIdWhateverTheName) {
    engine.setGain(0.5F, DeviceSource{interface4, "Old name"});

    EXPECT_EQ(engine.gain(wholeInput), 0.5F);
    EXPECT_EQ(engine.gain(thirdPair), 1.0F);
}

TEST_F(AudioEngineControl, RecoversFromAGainThatIsNoNumber) {
    startWith({player, browser});
    const float notANumber = std::numeric_limits<float>::quiet_NaN();
    const float infinity = std::numeric_limits<float>::infinity();

    engine.setGain(notANumber, player);
    EXPECT_EQ(nextInMic(), 0.125F);
    EXPECT_TRUE(std::isnan(engine.gain(player)));
    engine.setGain(infinity, player);
    EXPECT_EQ(nextInMic(), 0.125F);
    machine.advance(std::chrono::milliseconds{40});
    EXPECT_EQ(engine.level(), 1.0F);
    engine.setGain(1.0F, player);

    EXPECT_EQ(nextInMic(), 0.375F);
    machine.advance(std::chrono::seconds{1});
    EXPECT_EQ(engine.level(), 0.25F);
}

TEST_F(AudioEngineControl, BindsAGainToAControl) {
    const Binding<float> gain = engine.gainBinding(player);
    EXPECT_EQ(gain.get(), 1.0F);

    gain.set(0.25F);

    EXPECT_EQ(gain.get(), 0.25F);
    EXPECT_EQ(engine.storedGain(player), 0.25F);
}

// -- mute direct --

TEST_F(AudioEngineControl, SilencesARunningApplicationOnItsOwnOutput) {
    startWith({player});
    engine.setHeadphoneVolume(0.0F);
    EXPECT_EQ(next(speakers, 1), 0.375F);

    engine.setDirectMuted(true, player);

    EXPECT_TRUE(engine.isDirectMuted(player));
    EXPECT_EQ(next(speakers, 1), 0.125F);
    EXPECT_EQ(nextInMic(), 0.25F);
    EXPECT_EQ(machine.defaults.read<BooleanMap>("sourceMuteDirect"),
              (BooleanMap{{"app-org.player-4711", true}}));

    engine.setDirectMuted(false, player);
    EXPECT_EQ(next(speakers, 1), 0.375F);
}

TEST_F(AudioEngineControl, StartsAMutedSourceMuted) {
    engine.setDirectMuted(true, player);
    EXPECT_EQ(next(speakers, 1), 0.375F);
    engine.setHeadphoneVolume(0.0F);

    startWith({player});

    EXPECT_EQ(next(speakers, 1), 0.125F);
    engine.stop();
    EXPECT_EQ(next(speakers, 1), 0.375F);
}

TEST_F(AudioEngineControl, StaysSilentWhenARestartForAMuteFails) {
    startWith({player, browser});
    machine.sound.refuse(Operation::createTap);

    engine.setDirectMuted(true, player);

    EXPECT_EQ(engine.lastError(), std::nullopt);
    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(nextInMic(), 0.125F);
    machine.sound.allow(Operation::createTap);
    engine.start();
    EXPECT_EQ(nextInMic(), 0.375F);
}

TEST_F(AudioEngineControl, BindsAMuteToAControl) {
    const Binding<bool> muted = engine.muteDirectBinding(player);
    EXPECT_FALSE(muted.get());

    muted.set(true);

    EXPECT_TRUE(muted.get());
    EXPECT_TRUE(engine.isDirectMuted(player));
}

// -- effects --

TEST_F(AudioEngineControl, HearsEffectsAtTheNextBlock) {
    startWith({player});
    const float before = nextInMic();

    engine.setFX(manualGain(-60.0F), player);
    machine.advance(std::chrono::seconds{20}); // the level glides there with 1.5 s

    EXPECT_EQ(before, 0.25F);
    EXPECT_NEAR(nextInMic(), 0.00025F, 0.00001F);
}

TEST_F(AudioEngineControl, StartsASourceWithItsEffects) {
    FXParams params = manualGain(0.0F);
    params.lowcut = 2;
    engine.setFX(params, player);

    startWith({player});
    machine.advance(std::chrono::milliseconds{500});

    EXPECT_NEAR(nextInMic(), 0.0F, 1e-4F); // a constant is below any low cut
}

TEST_F(AudioEngineControl, KeepsOnlyEffectsThatAreNotNeutral) {
    engine.replaceSources({player});
    engine.setFX(manualGain(3.0F), player);
    EXPECT_EQ(engine.fx(player), manualGain(3.0F));
    EXPECT_EQ(engine.storedFX(player), manualGain(3.0F));
    EXPECT_TRUE(engine.anyFXActive());

    engine.setFX(FXParams{}, player);

    EXPECT_EQ(engine.fx(player), FXParams{});
    EXPECT_EQ(engine.storedFX(player), std::nullopt);
    EXPECT_FALSE(engine.anyFXActive());
    const Bytes empty{'{', '}'};
    EXPECT_EQ(machine.defaults.read<Bytes>("sourceFX"), empty);
}

TEST_F(AudioEngineControl, CountsOnlyEffectsOfSourcesInTheList) {
    engine.setFX(manualGain(3.0F), player);
    EXPECT_FALSE(engine.anyFXActive());

    engine.add(browser);
    EXPECT_FALSE(engine.anyFXActive());
    engine.add(player);

    EXPECT_TRUE(engine.anyFXActive());
}

TEST_F(AudioEngineControl, WritesNoEffectsThatJsonCannotHold) {
    engine.setFX(manualGain(3.0F), player);
    const auto before = machine.defaults.read<Bytes>("sourceFX");

    engine.setFX(manualGain(std::numeric_limits<float>::infinity()), browser);

    EXPECT_EQ(machine.defaults.read<Bytes>("sourceFX"), before);
    EXPECT_TRUE(engine.storedFX(browser).has_value());
}

TEST_F(AudioEngineControl, BindsEffectsToAControl) {
    const Binding<FXParams> fx = engine.fxBinding(player);
    EXPECT_EQ(fx.get(), FXParams{});

    fx.set(manualGain(3.0F));

    EXPECT_EQ(fx.get(), manualGain(3.0F));
    EXPECT_EQ(engine.fx(player), manualGain(3.0F));
}

TEST_F(AudioEngineControl, BypassesTheEffectsOfEverySource) {
    FXParams lowCut;
    lowCut.lowcut = 2;
    engine.setFX(lowCut, player);
    engine.setFX(lowCut, browser);
    startWith({player, browser});
    machine.advance(std::chrono::milliseconds{500});
    EXPECT_NEAR(nextInMic(), 0.0F, 1e-3F);

    engine.setFxBypassed(true);

    EXPECT_TRUE(engine.fxBypassed());
    EXPECT_EQ(nextInMic(), 0.375F);
}

TEST_F(AudioEngineControl, StartsBypassedWhenItWasBypassedBefore) {
    FXParams lowCut;
    lowCut.lowcut = 2;
    engine.setFX(lowCut, player);
    engine.setFxBypassed(true);

    startWith({player});

    EXPECT_EQ(nextInMic(), 0.25F);
    EXPECT_FALSE(machine.defaults.kept().contains("fxBypassed"));
}

// -- volumes --

TEST_F(AudioEngineControl, HasAVolumeForEachOutput) {
    startWith({player});

    engine.setStreamVolume(0.5F);
    engine.setHeadphoneVolume(2.0F);

    EXPECT_EQ(nextInMic(), 0.125F);
    EXPECT_EQ(nextMonitored(), 0.5F);
    EXPECT_EQ(machine.defaults.read<double>("streamVolume"), 0.5);
    EXPECT_EQ(machine.defaults.read<double>("headphoneVolume"), 2.0);
}

TEST_F(AudioEngineControl, RecoversFromAVolumeThatIsNoNumber) {
    startWith({player});

    engine.setStreamVolume(std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(nextInMic(), 0.0F);
    engine.setStreamVolume(std::numeric_limits<float>::infinity());
    EXPECT_EQ(nextInMic(), 0.0F);
    engine.setStreamVolume(1.0F);

    EXPECT_EQ(nextInMic(), 0.25F);
}

// -- the list --

TEST_F(AudioEngineControl, AddsASourceOnce) {
    engine.add(player);
    engine.add(player);
    engine.add(browser);

    EXPECT_THAT(engine.sources(), ElementsAre(player, browser));
}

TEST_F(AudioEngineControl, TellsSourcesOfOneIdApartByTheirNames) {
    const AudioSource renamed = DeviceSource{interface4, "Renamed"};
    engine.add(wholeInput);
    engine.add(renamed);

    EXPECT_THAT(engine.sources(), ElementsAre(wholeInput, renamed));
}

TEST_F(AudioEngineControl, HearsASourceThatIsAddedWhileItRuns) {
    startWith({player});

    engine.add(browser);

    EXPECT_EQ(nextInMic(), 0.375F);
}

TEST_F(AudioEngineControl, RestartsNothingForASourceThatIsThereAlready) {
    startWith({player});

    engine.add(player);

    EXPECT_EQ(tapsMade(), 1U);
}

TEST_F(AudioEngineControl, RemovesEveryEntryOfASourceButKeepsItsSettings) {
    engine.setGain(0.5F, player);
    engine.replaceSources({player, browser, player});

    engine.remove(engine.sources().front());

    EXPECT_THAT(engine.sources(), ElementsAre(browser));
    EXPECT_EQ(engine.gain(player), 0.5F);
}

TEST_F(AudioEngineControl, GoesOnWithoutASourceThatIsRemoved) {
    startWith({player, browser});

    engine.remove(player);

    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(nextInMic(), 0.125F);
}

TEST_F(AudioEngineControl, StopsWhenTheLastSourceIsRemoved) {
    startWith({player});
    machine.advance(std::chrono::milliseconds{100});

    engine.remove(player);

    EXPECT_FALSE(engine.isRunning());
    EXPECT_EQ(engine.level(), 0.0F);
    EXPECT_THAT(engine.sourceLevels(), IsEmpty());
    EXPECT_EQ(engine.lastError(), std::nullopt);
    EXPECT_EQ(machine.sound.census(), nothingRuns);
}

TEST_F(AudioEngineControl, PutsAPrimarySourceInThePlaceOfTheFirst) {
    engine.setPrimary(player);
    EXPECT_THAT(engine.sources(), ElementsAre(player));
    engine.add(browser);

    engine.setPrimary(wholeInput);

    EXPECT_THAT(engine.sources(), ElementsAre(wholeInput, browser));
}

TEST_F(AudioEngineControl, LeavesTwoEntriesOfASourceThatBecomesPrimary) {
    engine.replaceSources({player, browser});

    engine.setPrimary(browser);

    EXPECT_THAT(engine.sources(), ElementsAre(browser, browser));
}

TEST_F(AudioEngineControl, RestartsForANewPrimarySourceOnly) {
    startWith({player, browser});
    EXPECT_EQ(tapsMade(), 2U);

    engine.setPrimary(player);
    EXPECT_EQ(tapsMade(), 2U);
    engine.setPrimary(wholeInput);

    EXPECT_EQ(tapsMade(), 3U);
    EXPECT_EQ(nextInMic(), 0.0625F + 0.125F);
}

TEST_F(AudioEngineControl, ReplacesAndInsertsWithoutARestart) {
    startWith({player});

    engine.replaceSources({browser});
    engine.insertSource(player, 99);
    engine.insertSource(wholeInput, 0);

    EXPECT_THAT(engine.sources(), ElementsAre(wholeInput, browser, player));
    EXPECT_EQ(nextInMic(), 0.25F); // still the first mix
}

// -- observers --

TEST_F(AudioEngineControl, TellsEveryChangeOnce) {
    EXPECT_EQ(notifications([&] { engine.setGain(0.5F, player); }), 1);
    EXPECT_EQ(notifications([&] { engine.setDirectMuted(true, player); }), 1);
    EXPECT_EQ(notifications([&] { engine.setFX(manualGain(1.0F), player); }), 1);
    EXPECT_EQ(notifications([&] { engine.setFxBypassed(true); }), 1);
    EXPECT_EQ(notifications([&] { engine.setStreamVolume(0.5F); }), 1);
    EXPECT_EQ(notifications([&] { engine.setHeadphoneVolume(0.5F); }), 1);
    EXPECT_EQ(notifications([&] { engine.setMonitoringSelection("headset"); }), 1);
    EXPECT_EQ(notifications([&] { engine.setLastError("told"); }), 1);
    EXPECT_EQ(notifications([&] { engine.add(player); }), 1);
    EXPECT_EQ(notifications([&] { engine.insertSource(browser, 0); }), 1);
    EXPECT_EQ(notifications([&] { engine.setPrimary(wholeInput); }), 1);
    EXPECT_EQ(notifications([&] { engine.start(); }), 1);
    EXPECT_EQ(notifications([&] { engine.remove(player); }), 1);
    EXPECT_EQ(notifications([&] { engine.replaceSources({player}); }), 1);
    EXPECT_EQ(notifications([&] { engine.stop(); }), 1);
}

TEST_F(AudioEngineControl, TellsNothingWhenNothingChanged) {
    engine.setGain(0.5F, player);
    engine.setFX(manualGain(1.0F), player);
    engine.add(player);

    EXPECT_EQ(notifications([&] {
                  engine.setGain(0.5F, player);
                  engine.setFX(manualGain(1.0F), player);
                  engine.setFxBypassed(false);
                  engine.setStreamVolume(1.0F);
                  engine.setHeadphoneVolume(1.0F);
                  engine.setMonitoringSelection(std::nullopt);
                  engine.setLastError(std::nullopt);
                  engine.add(player);
                  engine.remove(browser);
                  engine.setPrimary(player);
                  engine.replaceSources({player});
                  engine.stop();
              }),
              0);
}

TEST_F(AudioEngineControl, LetsAnObserverStartAndStop) {
    engine.replaceSources({player});
    const auto connection = engine.changed().connect([&] { engine.start(); });

    engine.setGain(0.5F, player);

    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(nextInMic(), 0.125F);
    engine.stop(); // the observer starts again
    EXPECT_TRUE(engine.isRunning());
}

TEST_F(AudioEngineControl, LetsAnObserverRepeatAStartThatFails) {
    machine.sound.removeDevice(mic);
    engine.replaceSources({player});
    const auto connection = engine.changed().connect([&] { engine.start(); });

    engine.start();

    EXPECT_FALSE(engine.isRunning());
    EXPECT_EQ(machine.sound.census(), nothingRuns);
}

} // namespace
} // namespace velmora
