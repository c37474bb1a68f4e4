// MixerTest.h: the real mixer on a private session, judged by what other programs hear.
#pragma once

#include "app/RealPlatform.h"
#include "capture/SourceManager.h"
#include "engine/AudioEngine.h"
#include "support/ClientPrograms.h"
#include "support/SessionTest.h"
#include "support/TemporaryFolder.h"
#include "support/Wait.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace velmora {

/// One mixer per test, with settings of its own. Everything here waits for what it asks for; a
/// failure shows as a failed expectation.
class MixerTest : public support::SessionTest {
protected:
    /// What the engine says while PipeWire is away.
    const std::string serviceAway = frenchSentence({.kind = Problem::Kind::serviceAway});

    /// The application led by `pid`, once discovery lists it as playing.
    AudioSource playing(pid_t pid) {
        std::optional<AudioSource> found;
        EXPECT_TRUE(support::waitUntil([&] {
            discovery.refresh();
            found = listed(pid);
            return found && discovery.playingPIDs().contains(pid);
        })) << "process "
            << pid << " is not listed as playing";
        return found.value_or(AppSource{.pid = pid, .name = "missing", .bundleID = "missing"});
    }

    /// As last refreshed.
    [[nodiscard]] std::optional<AudioSource> listed(pid_t pid) const {
        const auto& apps = discovery.runningApps();
        const auto found = std::ranges::find_if(
            apps, [&](const AudioSource& source) { return source.app()->pid == pid; });
        return found == apps.end() ? std::nullopt : std::optional(*found);
    }

    /// A channel range of an input device, once it is listed.
    AudioSource input(const std::string& deviceName, std::int64_t first, std::int64_t count) {
        return DeviceChannelsSource{
            .id = deviceId(deviceName), .first = first, .count = count, .name = deviceName};
    }

    AudioObjectID deviceId(const std::string& deviceName) {
        AudioObjectID id = 0;
        EXPECT_TRUE(support::waitUntil([&] {
            discovery.refresh();
            const auto& infos = discovery.inputDeviceInfos();
            const auto found = std::ranges::find(infos, deviceName, &InputDeviceInfo::name);
            id = found == infos.end() ? 0 : found->deviceID;
            return id != 0;
        })) << deviceName
            << " is not listed";
        return id;
    }

    /// Starts a mix of these sources; it must come up without a message.
    void mix(const std::vector<AudioSource>& sources) {
        engine.replaceSources(sources);
        engine.start();
        ASSERT_TRUE(engine.isRunning()) << engine.lastError().value_or("no message");
        EXPECT_EQ(engine.lastError(), std::nullopt);
    }

    void setGainDb(double db, const AudioSource& source) {
        engine.setGain(static_cast<float>(support::fromDb(db)), source);
    }

    support::TemporaryFolder folder{"velmora-mixer"};
    RealPlatform machine{folder.path() / "settings.db"};
    Platform platform = machine.platform();
    AudioEngine engine{platform};
    SourceManager discovery{platform};
};

/// A `MixerTest` with a recorder at the virtual microphone and one at the speakers' monitor.
class ListeningMixerTest : public MixerTest {
protected:
    support::Recorder mic{session(), support::microphone, {1, 2}};
    support::Recorder atSpeakers{session(), support::speakers.name, {1, 2}};
};

/// For what a test says, and notes of a good run.
inline int milliseconds(std::chrono::nanoseconds duration) {
    return static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(duration).count());
}

/// Frequencies and level that most tests play. Far apart, and not multiples of one another.
inline constexpr double leftHz = 440;
inline constexpr double rightHz = 554;
inline constexpr double otherLeftHz = 1000;
inline constexpr double otherRightHz = 1270;
inline constexpr double inputLeftHz = 2300;
inline constexpr double inputRightHz = 3100;
inline constexpr double playedDb = -20;

} // namespace velmora
