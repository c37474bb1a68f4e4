// What is kept of real programs in a real store, and for how long.

#include "app/RealPlatform.h"
#include "engine/AudioEngine.h"
#include "support/ClientPrograms.h"
#include "support/SessionTest.h"
#include "support/TemporaryFolder.h"
#include "support/Wait.h"

#include <gmock/gmock.h>
#include <memory>

namespace velmora {
namespace {

using namespace support;
using ::testing::ElementsAre;
using ::testing::Key;
using ::testing::UnorderedElementsAre;

/// A mixer that can be launched again with what the one before has kept.
class KeptSettings : public SessionTest {
protected:
    struct Mixer {
        explicit Mixer(const std::filesystem::path& file) : machine(file) {}

        RealPlatform machine;
        Platform platform = machine.platform();
        AudioEngine engine{platform};
    };

    KeptSettings() {
        app->play("music", 440, 554, -20);
        other.play("music", 1000, 1270, -20);
    }

    static AudioSource sourceOf(const ToneApp& program) {
        return AppSource{.pid = program.pid(),
                         .name = "player",
                         .bundleID = "pid." + std::to_string(program.pid())};
    }
    void keepSomethingOf(const AudioSource& source) {
        mixer->engine.setGain(0.5F, source);
        mixer->engine.setDirectMuted(true, source);
        mixer->engine.setFX(effects, source);
    }
    void expectNothingKept(const AudioSource& source) {
        EXPECT_TRUE(waitUntil([&] { return !mixer->engine.storedGain(source).has_value(); }));
        EXPECT_EQ(mixer->engine.storedFX(source), std::nullopt);
        EXPECT_FALSE(mixer->engine.isDirectMuted(source));
    }
    void expectAllKept(const AudioSource& source) {
        EXPECT_EQ(mixer->engine.storedGain(source), 0.5F);
        EXPECT_EQ(mixer->engine.storedFX(source), effects);
        EXPECT_TRUE(mixer->engine.isDirectMuted(source));
    }
    template <typename Map>
    Map stored(const std::string& key) {
        return mixer->platform.defaults.read<Map>(key).value_or(Map{});
    }
    void relaunch() {
        mixer.reset();
        mixer = std::make_unique<Mixer>(file);
    }

    const FXParams effects{.autoGain = false, .manualDB = -9};
    const AudioSource device =
        DeviceChannelsSource{.id = 1, .first = 1, .count = 2, .name = "Interface"};
    TemporaryFolder folder{"velmora-kept"};
    const std::filesystem::path file = folder.path() / "settings.db";
    std::optional<ToneApp> app{std::in_place, session()};
    const ToneApp other{session()};
    std::unique_ptr<Mixer> mixer = std::make_unique<Mixer>(file);
};

TEST_F(KeptSettings, GoWithTheirProgramAndLeaveTheOthers) {
    const AudioSource gone = sourceOf(*app);
    const AudioSource there = sourceOf(other);
    for (const AudioSource& source : {gone, there, device}) {
        keepSomethingOf(source);
    }

    app.reset();

    expectNothingKept(gone);
    expectAllKept(there);
    expectAllKept(device);
    relaunch();
    EXPECT_THAT(stored<NumberMap>("sourceGains"),
                UnorderedElementsAre(Key(there.id()), Key(device.id())));
    EXPECT_THAT(stored<BooleanMap>("sourceMuteDirect"),
                UnorderedElementsAre(Key(there.id()), Key(device.id())));
    EXPECT_THAT(stored<NumberMap>("sourceBirths"), ElementsAre(Key(there.id())));
    expectAllKept(there);
    expectAllKept(device);
}

TEST_F(KeptSettings, OfAProgramThatEndsWhileNoMixerRunsGoAtTheNextLaunch) {
    const AudioSource gone = sourceOf(*app);
    const AudioSource there = sourceOf(other);
    keepSomethingOf(gone);
    keepSomethingOf(there);

    mixer.reset();
    app.reset();
    mixer = std::make_unique<Mixer>(file);

    expectNothingKept(gone);
    expectAllKept(there);
}

TEST_F(KeptSettings, AreNotInheritedByAStrangerWithTheSameNumber) {
    const AudioSource there = sourceOf(other);
    keepSomethingOf(there);
    auto births = stored<NumberMap>("sourceBirths");
    ASSERT_THAT(births, ElementsAre(Key(there.id())));
    births[there.id()] -= 1; // it was kept for somebody who came earlier
    mixer->platform.defaults.set("sourceBirths", births);

    relaunch();

    expectNothingKept(there);
    EXPECT_THAT(stored<BooleanMap>("sourceMuteDirect"), ElementsAre());
}

} // namespace
} // namespace velmora
