#include "engine/EngineFixture.h"

#include <gmock/gmock.h>

namespace velmora {
namespace {

class EngineSettingsTest : public EngineFixture {
protected:
    /// An engine as the next launch makes it, from what the store has kept.
    std::unique_ptr<AudioEngine> relaunched() {
        return std::make_unique<AudioEngine>(machine.platform());
    }

    /// What an engine makes of one stored value.
    std::unique_ptr<AudioEngine> launchedWith(const std::string& key, const DefaultsValue& value) {
        machine.defaults.set(key, value);
        return relaunched();
    }

    static Bytes bytes(std::string_view text) { return {text.begin(), text.end()}; }
};

TEST_F(EngineSettingsTest, OutliveTheEngine) {
    FXParams params;
    params.comp = 2;
    params.tilt = -0.25F;
    const AudioSource longNamed = AppSource{7, "Long", std::string(300, 'x')};
    engine.setGain(0.1F, player);
    engine.setGain(1.5F, longNamed);
    engine.setDirectMuted(true, player);
    engine.setFX(params, wholeInput);
    engine.setHeadphoneVolume(0.3F);
    engine.setStreamVolume(1.7F);
    engine.setMonitoringSelection("interface#3");

    const auto next = relaunched();

    EXPECT_EQ(next->gain(player), 0.1F);
    EXPECT_EQ(next->gain(longNamed), 1.5F);
    EXPECT_TRUE(next->isDirectMuted(player));
    EXPECT_EQ(next->fx(wholeInput), params);
    EXPECT_EQ(next->headphoneVolume(), 0.3F);
    EXPECT_EQ(next->streamVolume(), 1.7F);
    EXPECT_EQ(next->monitoringSelection(), "interface#3");
    EXPECT_TRUE(next->sources().empty());
    EXPECT_FALSE(next->isRunning());
}

TEST_F(EngineSettingsTest, AreHeardAfterARelaunch) {
    engine.setGain(0.5F, player);
    engine.setStreamVolume(0.5F);
    engine.setMonitoringSelection("interface#3");
    const auto relaunchedEngine = relaunched();
    relaunchedEngine->replaceSources({player});

    relaunchedEngine->start();

    EXPECT_EQ(nextInMic(), 0.0625F);
    EXPECT_EQ(next(interface4, 3), 0.125F);
}

TEST_F(EngineSettingsTest, DoNotApplyToAnotherProcessOfAnApplication) {
    engine.setGain(0.5F, player);

    EXPECT_EQ(relaunched()->gain(AppSource{playerPid + 1, "Player", "org.player"}), 1.0F);
}

TEST_F(EngineSettingsTest, KeepEffectsAsOneJsonObject) {
    FXParams params;
    params.comp = 2;
    engine.setFX(params, wholeInput);

    const auto stored = machine.defaults.read<Bytes>("sourceFX").value();

    const std::string expected =
        "{\"" + wholeInput.id() +
        "\":{\"lowcut\":0,\"tilt\":0.0,\"comp\":2,\"autoGain\":true,\"manualDB\":0.0,"
        "\"reverbChar\":0,\"reverbMix\":0.0,\"plosive\":false,\"denoise\":false}}";
    EXPECT_EQ(std::string(stored.begin(), stored.end()), expected);
}

TEST_F(EngineSettingsTest, ReadEffectsThatAnOlderVersionWrote) {
    const auto next = launchedWith("sourceFX", bytes(R"({"dev-7":{"comp":2},"dev-8":{}})"));

    EXPECT_EQ(next->fx(DeviceSource{7, ""}).comp, 2);
    EXPECT_EQ(next->fx(DeviceSource{8, ""}), FXParams{});
}

TEST_F(EngineSettingsTest, AreEmptyWhenEffectsCannotBeRead) {
    for (const char* text : {"",
                             "{",
                             "[]",
                             "null",
                             R"({"dev-7":{"comp":2},"dev-8":{"comp":"x"}})",
                             R"({"dev-7":3})",
                             "\xFF"}) {
        EXPECT_EQ(launchedWith("sourceFX", bytes(text))->storedFX(DeviceSource{7, ""}),
                  std::nullopt)
            << text;
    }
}

TEST_F(EngineSettingsTest, TakeAValueOfTheWrongFormForNone) {
    EXPECT_EQ(launchedWith("headphoneVolume", std::string("loud"))->headphoneVolume(), 1.0F);
    EXPECT_EQ(launchedWith("streamVolume", true)->streamVolume(), 1.0F);
    EXPECT_EQ(launchedWith("sourceGains", 0.5)->gain(player), 1.0F);
    EXPECT_EQ(launchedWith("sourceGains", BooleanMap{{player.id(), true}})->gain(player), 1.0F);
    EXPECT_FALSE(
        launchedWith("sourceMuteDirect", NumberMap{{player.id(), 1.0}})->isDirectMuted(player));
    EXPECT_EQ(launchedWith("sourceFX", std::string("{}"))->storedFX(player), std::nullopt);
    EXPECT_EQ(launchedWith("monitoringSelection", 3.0)->monitoringSelection(), std::nullopt);
}

TEST_F(EngineSettingsTest, LetGoOfAMonitoringSelectionOfTheWrongForm) {
    (void)launchedWith("monitoringSelection", 3.0);

    EXPECT_FALSE(machine.defaults.kept().contains("monitoringSelection"));
}

TEST_F(EngineSettingsTest, AreEditedEvenWhenTheStoreRefuses) {
    machine.defaults.refuseWrites({.kind = StoreProblem::Kind::full, .status = -28});

    engine.setGain(0.5F, player);
    engine.setStreamVolume(0.25F);
    engine.setMonitoringSelection("interface");

    EXPECT_EQ(engine.gain(player), 0.5F);
    EXPECT_EQ(engine.streamVolume(), 0.25F);
    EXPECT_EQ(engine.monitoringSelection(), "interface");
    EXPECT_FALSE(machine.defaults.kept().contains("sourceGains"));
}

} // namespace
} // namespace velmora
