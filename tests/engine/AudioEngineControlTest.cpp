#include "engine/EngineFixture.h"

#include <cmath>
#include <gmock/gmock.h>
#include <limits>

namespace velmora {
namespace {

using testing::IsEmpty;

class AudioEngineControl : public EngineFixture {};

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

TEST_F(AudioEngineControl, HearsAGainThatIsSetUnderAnotherNameOfTheSource) {
    startWith({player});

    engine.setGain(0.5F, AppSource{playerPid, "Renamed", "org.player"});

    EXPECT_EQ(nextInMic(), 0.125F);
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

TEST_F(AudioEngineControl, GivesAnApplicationBackThatIsInTheListTwice) {
    startWith({player, player});
    engine.setHeadphoneVolume(0.0F);

    engine.setDirectMuted(true, player);
    EXPECT_EQ(next(speakers, 1), 0.125F);

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
    machine.sound.refuse(Operation::openTap);

    engine.setDirectMuted(true, player);

    EXPECT_EQ(engine.lastError(), std::nullopt);
    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(nextInMic(), 0.125F);
    machine.sound.allow(Operation::openTap);
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

} // namespace
} // namespace velmora
