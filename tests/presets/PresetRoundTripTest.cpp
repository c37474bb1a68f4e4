#include "engine/AudioEngine.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "presets/PresetRecall.h"
#include "presets/PresetSnapshot.h"
#include "presets/PresetStore.h"
#include "presets/RandomPreset.h"
#include "settings/AppSettings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace velmora {
namespace {

constexpr int appCount = 6;
constexpr int deviceCount = 6;

/// One launch of the program on a machine with six applications and six devices. Process ids and
/// device ids differ from launch to launch; identifiers and UIDs do not.
class Launch {
public:
    explicit Launch(std::uint32_t firstID) : firstID_(firstID) {
        for (int number = 0; number < appCount; ++number) {
            machine.startApplication(pid(number), "App", bundleID(number));
        }
        for (int number = 0; number < deviceCount; ++number) {
            machine.sound.addDevice({.uid = "device-" + std::to_string(number),
                                     .name = "Device",
                                     .inputs = {8},
                                     .id = deviceID(number)});
        }
    }

    [[nodiscard]] AudioSource app(int number, const std::string& name) const {
        return AppSource{pid(number), name, bundleID(number)};
    }
    [[nodiscard]] AudioSource device(int number, const std::string& name) const {
        return DeviceSource{deviceID(number), name};
    }
    [[nodiscard]] AudioSource
    channels(int number, std::int64_t first, std::int64_t count, const std::string& name) const {
        return DeviceChannelsSource{deviceID(number), first, count, name};
    }

    SimulatedPlatform machine;
    AudioEngine engine{machine.platform()};
    AppSettings settings{machine.platform()};
    PresetRecall recall{machine.platform(), engine};

private:
    [[nodiscard]] std::int32_t pid(int number) const {
        return static_cast<std::int32_t>(firstID_) + number;
    }
    [[nodiscard]] AudioObjectID deviceID(int number) const {
        return firstID_ + 100U + static_cast<AudioObjectID>(number);
    }
    [[nodiscard]] static std::string bundleID(int number) {
        return "org.example.app" + std::to_string(number);
    }

    std::uint32_t firstID_;
};

/// A source in terms that both launches understand.
struct ChosenSource {
    int kind{};
    int number{};
    std::int64_t first{};
    std::int64_t count{};
    std::string name;
    float gain{};
    FXParams fx;

    [[nodiscard]] AudioSource in(const Launch& launch) const {
        switch (kind) {
        case 0:
            return launch.app(number, name);
        case 1:
            return launch.device(number, name);
        default:
            return launch.channels(number, first, count, name);
        }
    }
};

/// Distinct sources, so that each has settings of its own.
std::vector<ChosenSource> randomChoices(Random& random) {
    std::vector<ChosenSource> all;
    const auto add = [&](int kind, int number, std::int64_t first, std::int64_t count) {
        all.push_back({kind,
                       number,
                       first,
                       count,
                       randomText(random, 40),
                       randomFloat(random),
                       random() % 3 == 0 ? FXParams{} : randomFX(random)});
    };
    for (int number = 0; number < appCount; ++number) {
        add(0, number, 0, 0);
        add(1, number, 0, 0);
        add(2, number, 1 + static_cast<std::int64_t>(random() % 8), 1);
        add(2, number, 1 + static_cast<std::int64_t>(random() % 7), 2);
    }
    std::ranges::shuffle(all, random);
    all.resize(random() % (all.size() + 1));
    return all;
}

TEST(PresetRoundTrip, AThousandRandomSetupsComeBackInTheNextLaunchFieldByField) {
    Random random(4711);
    for (int round = 0; round < 1000; ++round) {
        SCOPED_TRACE(round);
        const auto choices = randomChoices(random);
        const auto headphoneVolume = randomFloat(random);
        const auto streamVolume = randomFloat(random);
        Launch before(1000);
        for (const auto& choice : choices) {
            const auto source = choice.in(before);
            before.engine.add(source);
            before.engine.setGain(choice.gain, source);
            before.engine.setFX(choice.fx, source);
        }
        before.engine.setHeadphoneVolume(headphoneVolume);
        before.engine.setStreamVolume(streamVolume);
        PresetStore saving(before.machine.defaults);
        const auto name = randomText(random, 300);
        saving.save(snapshotPreset(before.engine, before.machine.devices, name));

        PresetStore reading(before.machine.defaults);
        ASSERT_EQ(reading.presets(), saving.presets());
        Launch after(5000);
        reading.restoreActive(after.recall);

        const auto& engine = after.engine;
        ASSERT_EQ(engine.sources().size(), choices.size());
        for (std::size_t place = 0; place < choices.size(); ++place) {
            const auto source = choices[place].in(after);
            EXPECT_EQ(engine.sources()[place], source);
            EXPECT_EQ(engine.gain(source), choices[place].gain);
            EXPECT_EQ(engine.fx(source), choices[place].fx);
        }
        EXPECT_EQ(engine.headphoneVolume(), headphoneVolume);
        EXPECT_EQ(engine.streamVolume(), streamVolume);
        auto again = snapshotPreset(engine, after.machine.devices, name);
        again.id = reading.activeID().value();
        EXPECT_EQ(again, *reading.active());
        ASSERT_FALSE(HasFailure());
    }
}

} // namespace
} // namespace velmora
