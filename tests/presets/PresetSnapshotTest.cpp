#include "presets/PresetSnapshot.h"

#include "engine/AudioEngine.h"
#include "platform/simulated/SimulatedPlatform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using testing::ElementsAre;

class PresetSnapshotTest : public testing::Test {
protected:
    [[nodiscard]] Preset snapshot() const {
        return snapshotPreset(engine_, machine_.devices, "Podcast");
    }

    SimulatedPlatform machine_;
    AudioEngine engine_{machine_.platform()};
};

TEST_F(PresetSnapshotTest, AnEmptyEngineGivesANamedPresetWithBothVolumes) {
    engine_.setHeadphoneVolume(0.5F);
    engine_.setStreamVolume(1.5F);

    const auto preset = snapshot();

    EXPECT_EQ(preset,
              (Preset{.id = preset.id,
                      .name = "Podcast",
                      .sources = {},
                      .headphoneVolume = 0.5F,
                      .streamVolume = 1.5F}));
}

TEST_F(PresetSnapshotTest, EachSnapshotHasAnIdOfItsOwn) {
    EXPECT_NE(snapshot().id, snapshot().id);
}

TEST_F(PresetSnapshotTest, SourcesAreTakenInOrderUnderKeysThatOutliveALaunch) {
    machine_.sound.addDevice({.uid = "usb-1", .name = "Interface", .inputs = {4}, .id = 70});
    engine_.add(DeviceChannelsSource{70, 3, 2, "Interface 3-4"});
    engine_.add(AppSource{20, "Player", "org.example.player"});
    engine_.add(DeviceSource{70, "Interface"});

    EXPECT_THAT(snapshot().sources,
                ElementsAre(PresetSource{.kind = PresetSource::Kind::deviceChannels,
                                         .name = "Interface 3-4",
                                         .deviceUID = "usb-1",
                                         .first = 3,
                                         .count = 2},
                            PresetSource{.kind = PresetSource::Kind::app,
                                         .name = "Player",
                                         .bundleID = "org.example.player"},
                            PresetSource{.kind = PresetSource::Kind::device,
                                         .name = "Interface",
                                         .deviceUID = "usb-1"}));
}

TEST_F(PresetSnapshotTest, GainAndEffectsAreTakenWhereTheyWereSet) {
    const AudioSource plain = AppSource{20, "Plain", "org.example.plain"};
    const AudioSource shaped = AppSource{21, "Shaped", "org.example.shaped"};
    engine_.add(plain);
    engine_.add(shaped);
    engine_.setGain(0.25F, shaped);
    engine_.setFX({.reverbMix = 0.5F}, shaped);

    const auto sources = snapshot().sources;

    EXPECT_EQ(sources[0].gain, 1.0F);
    EXPECT_EQ(sources[0].fx, std::nullopt);
    EXPECT_EQ(sources[1].gain, 0.25F);
    EXPECT_EQ(sources[1].fx, (FXParams{.reverbMix = 0.5F}));
}

TEST_F(PresetSnapshotTest, ADeviceWhoseUidCannotBeReadIsKeptWithoutOne) {
    engine_.add(DeviceSource{70, "Gone"});

    EXPECT_THAT(snapshot().sources,
                ElementsAre(PresetSource{.kind = PresetSource::Kind::device, .name = "Gone"}));
}

} // namespace
} // namespace velmora
