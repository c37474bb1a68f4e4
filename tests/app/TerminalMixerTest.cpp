#include "app/TerminalMixer.h"

#include "capture/SourceManager.h"
#include "engine/AudioEngine.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "presets/PresetRecall.h"
#include "presets/PresetStore.h"
#include "settings/AppSettings.h"

#include <cmath>

#include <gmock/gmock.h>

namespace velmora {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using Kind = KeyPress::Kind;

class TerminalMixerKeys : public testing::Test {
protected:
    TerminalMixerKeys() {
        machine.addSpeakers();
        machine.addVirtualMic();
        machine.startApplication(100, "Player", "org.example.Player");
        machine.sound.play(100, constant(0.25F));
    }

    void type(const std::string& keys) {
        for (const KeyPress& key : parseKeys(keys)) {
            mixer.press(key);
        }
    }
    void press(Kind kind) { mixer.press({kind, {}}); }
    void addPlayer() {
        type("a");
        press(Kind::enter);
    }
    [[nodiscard]] AudioSource player() const { return engine.sources().at(0); }

    SimulatedPlatform machine;
    Platform platform = machine.platform();
    AppSettings settings{platform};
    AudioEngine engine{platform};
    SourceManager sources{platform};
    PresetStore presets{platform.defaults};
    PresetRecall recall{platform, engine, settings};
    TerminalMixer mixer{{platform, engine, sources, presets, recall, settings}};
};

TEST_F(TerminalMixerKeys, OffersThePlayingApplicationAndAddsIt) {
    type("a");
    EXPECT_THAT(mixer.view().footer, Contains(HasSubstr("♪ Player")));

    press(Kind::enter);

    ASSERT_EQ(engine.sources().size(), 1U);
    EXPECT_EQ(player().id(), "app-org.example.Player-100");
}

TEST_F(TerminalMixerKeys, StartsAndStopsTheMixWithTheSpaceBar) {
    addPlayer();

    type(" ");
    EXPECT_TRUE(engine.isRunning());
    type(" ");
    EXPECT_FALSE(engine.isRunning());
}

TEST_F(TerminalMixerKeys, ShowsWhyAMixWithoutSourcesDoesNotStart) {
    type(" ");

    EXPECT_THAT(mixer.view().notices, ElementsAre("Choisir d'abord une source"));
}

TEST_F(TerminalMixerKeys, StepsAGainByOneDecibel) {
    addPlayer();

    press(Kind::left);
    press(Kind::left);

    EXPECT_NEAR(engine.gain(player()), std::pow(10.0F, -2.0F / 20.0F), 1e-6F);
}

TEST_F(TerminalMixerKeys, StopsAGainAtSixDecibelsAndAtSilence) {
    addPlayer();

    for (int step = 0; step < 20; ++step) {
        press(Kind::right);
    }
    EXPECT_NEAR(engine.gain(player()), std::pow(10.0F, 6.0F / 20.0F), 1e-6F);
    for (int step = 0; step < 80; ++step) {
        press(Kind::left);
    }
    EXPECT_EQ(engine.gain(player()), 0.0F);
}

TEST_F(TerminalMixerKeys, ReachesTheVolumesBelowTheSources) {
    addPlayer();

    press(Kind::down);
    press(Kind::left);
    EXPECT_NEAR(engine.headphoneVolume(), std::pow(10.0F, -1.0F / 20.0F), 1e-6F);
    press(Kind::up);
    press(Kind::up);
    press(Kind::left);
    EXPECT_NEAR(engine.streamVolume(), std::pow(10.0F, -1.0F / 20.0F), 1e-6F);
}

TEST_F(TerminalMixerKeys, MutesAndRemovesTheSelectedSource) {
    addPlayer();

    type("m");
    EXPECT_TRUE(engine.isDirectMuted(player()));
    type("x");
    EXPECT_TRUE(engine.sources().empty());
}

TEST_F(TerminalMixerKeys, AdjustsEffectsRowByRow) {
    addPlayer();

    type("e");
    press(Kind::right);
    press(Kind::down);
    press(Kind::left);

    EXPECT_EQ(engine.fx(player()).lowcut, 1);
    EXPECT_NEAR(engine.fx(player()).tilt, -0.1F, 1e-6F);
}

TEST_F(TerminalMixerKeys, ReturnsToNeutralByTheSameNumberOfSteps) {
    addPlayer();
    type("e");
    press(Kind::down);

    for (const Kind kind :
         {Kind::right, Kind::right, Kind::right, Kind::left, Kind::left, Kind::left}) {
        press(kind);
    }

    EXPECT_TRUE(engine.fx(player()).isNeutral());
}

TEST_F(TerminalMixerKeys, WalksFromAutomaticLevelThroughManualAndBack) {
    addPlayer();
    type("e");
    for (int row = 0; row < 7; ++row) {
        press(Kind::down);
    }

    press(Kind::right);
    EXPECT_FALSE(engine.fx(player()).autoGain);
    EXPECT_EQ(engine.fx(player()).manualDB, -12.0F);
    press(Kind::left);
    EXPECT_TRUE(engine.fx(player()).isNeutral());
}

TEST_F(TerminalMixerKeys, SavesAPresetUnderTheTrimmedName) {
    addPlayer();

    type("p\n");
    type("  Émission ");
    press(Kind::enter);

    ASSERT_EQ(presets.presets().size(), 1U);
    EXPECT_EQ(presets.presets()[0].name, "Émission");
}

TEST_F(TerminalMixerKeys, IgnoresAPresetNameOfSpaces) {
    type("p\n");
    type("   ");
    press(Kind::enter);

    EXPECT_TRUE(presets.presets().empty());
}

TEST_F(TerminalMixerKeys, ErasesAWholeCharacterOfAName) {
    type("p\n");
    type("été");
    press(Kind::backspace);

    EXPECT_THAT(mixer.view().footer, ElementsAre(HasSubstr(" : ét▏")));
}

TEST_F(TerminalMixerKeys, RecallsAndRemovesAPreset) {
    addPlayer();
    type("p\nA\n");
    type("x");

    type("p");
    press(Kind::down);
    press(Kind::enter);
    EXPECT_EQ(engine.sources().size(), 1U);

    type("p");
    press(Kind::down);
    press(Kind::backspace);
    EXPECT_TRUE(presets.presets().empty());
}

TEST_F(TerminalMixerKeys, OffersAnInterfaceChannelPairByChannelPair) {
    machine.sound.addDevice(
        {.uid = "interface", .name = "Interface", .outputs = {4}, .inputs = {4}});

    type("a");
    EXPECT_THAT(mixer.view().footer, Contains(HasSubstr("Interface — Entrées 3-4")));
    press(Kind::escape);
    type("o");
    EXPECT_THAT(mixer.view().footer, Contains(HasSubstr("Interface — Sorties 3-4")));
}

TEST_F(TerminalMixerKeys, RelabelsEverythingWhenTheLanguageChanges) {
    EXPECT_EQ(mixer.view().state, "Arrêté");

    type("l");

    EXPECT_EQ(mixer.view().state, "Stopped");
}

TEST_F(TerminalMixerKeys, AsksToQuit) {
    type("q");

    EXPECT_TRUE(mixer.wantsToQuit());
}

} // namespace
} // namespace velmora
