// AudioContract.h: what the tests of every audio layer have in common.
#pragma once

#include "platform/ApplicationTaps.h"
#include "platform/AudioDevices.h"
#include "platform/AudioUnits.h"
#include "platform/PublicSinks.h"
#include "support/ToneAnalysis.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <numbers>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

/// A device that a rig brings up for a test.
struct ContractDevice {
    std::string uid;
    std::string name;
    std::uint32_t outputs{};
    std::uint32_t inputs{};
};

/// A rig is a machine that runs at 48 kHz and has
/// - `devices()`, `taps()`, `sinks()` and `units()`;
/// - `makeDevice(ContractDevice)`, `removeDevice(uid)`, `makeDefault(uid)` (the default output);
/// - `loseService()`: the audio service goes, with the devices that were made and the applications;
///   `returnService()`: it comes back without them;
/// - `playTone(name, hz, db)`: starts an application that plays a sine on both channels of the
///   default output; returns its process id;
/// - `record(pid, uid)`: the application records from the device; `measure(pid, uid)`: it does so
///   only to show how loud the device is; `stopRecording(pid)`;
/// - `turnTo(uid, volume)`: somebody sets the device's volume in another mixer;
/// - `feed(uid, channel, hz, db)`: from now on the device's input channel (1-based) carries a sine,
///   and its other channels are silent;
/// - `listen(uid, channel, frames)`: what the device's output channel (1-based) plays from now on;
/// - `wait(condition)`: lets time pass and runs the main queue until the condition holds; false
///   when it gave up.
template <typename Rig>
class AudioContract : public testing::Test {
protected:
    static constexpr std::size_t listenedFrames = 12000; // a quarter of a second
    static constexpr std::size_t settledFrames = 48000;  // routes are in place by then
    static constexpr double tolerance = 0.2;             // dB
    static constexpr double silentDb = -80.0;
    static constexpr double rateHz = 48000.0;
    static constexpr AudioObjectID noSuchObject = 0xFFFF'FFF0U;
    static constexpr Status invalidArgument = -22;

    const ContractDevice speakers{.uid = "contract.speakers", .name = "Speakers", .outputs = 2};
    const ContractDevice interface4{
        .uid = "contract.interface", .name = "Interface", .outputs = 4, .inputs = 4};

    /// One that programs may record from by their own choice.
    const ContractDevice recordable{
        .uid = "contract.microphone", .name = "Microphone", .outputs = 2, .inputs = 2};

    AudioDevices& devices() { return rig.devices(); }

    std::vector<AudioObjectID> listed() {
        return devices().devices().value_or(std::vector<AudioObjectID>{});
    }

    std::optional<AudioObjectID> find(const std::string& uid) {
        for (const AudioObjectID device : listed()) {
            if (devices().deviceUID(device) == uid) {
                return device;
            }
        }
        return std::nullopt;
    }

    AudioObjectID make(const ContractDevice& device) {
        rig.makeDevice(device);
        EXPECT_TRUE(rig.wait([&] { return find(device.uid).has_value(); })) << device.uid;
        return find(device.uid).value_or(0);
    }

    void remove(const ContractDevice& device) {
        rig.removeDevice(device.uid);
        EXPECT_TRUE(rig.wait([&] { return !find(device.uid); })) << device.uid;
    }

    AudioObjectID makeDefaultSpeakers() {
        const AudioObjectID device = make(speakers);
        rig.makeDefault(speakers.uid);
        EXPECT_TRUE(rig.wait([&] { return devices().defaultOutputDevice() == device; }));
        return device;
    }

    void loseService() {
        rig.loseService();
        EXPECT_TRUE(rig.wait([&] { return !devices().isAvailable(); }));
    }

    void returnService() {
        rig.returnService();
        EXPECT_TRUE(rig.wait([&] { return devices().isAvailable(); }));
    }

    std::uint32_t channels(AudioObjectID device, Scope scope) {
        const auto streams = devices().streamChannels(device, scope);
        return streams ? std::accumulate(streams->begin(), streams->end(), 0U) : 0;
    }

    double heardDb(const std::string& uid, std::size_t channel, double hz) {
        return support::toneDb(rig.listen(uid, channel, listenedFrames), hz);
    }

    /// Listens until the tone has that level: a machine under load loses a block now and then.
    bool hears(const std::string& uid, std::size_t channel, double hz, double db) {
        return rig.wait([&] { return std::abs(heardDb(uid, channel, hz) - db) < tolerance; });
    }

    /// The process object of an application that has begun to play.
    AudioObjectID processOf(std::int32_t pid) {
        EXPECT_TRUE(rig.wait([&] { return rig.taps().processForPid(pid).value_or(0) != 0; }));
        return rig.taps().processForPid(pid).value_or(0);
    }

    /// Plays a different sine on either side.
    static RenderCallback tones(double leftHz, double rightHz, double db) {
        return [=, frame = std::int64_t{0}](std::int64_t frames,
                                            std::span<float* const> output) mutable {
            for (std::int64_t index = 0; index < frames; ++index, ++frame) {
                const auto at = static_cast<double>(frame) / rateHz;
                const double level = support::fromDb(db);
                output[0][index] =
                    static_cast<float>(level * std::sin(2 * std::numbers::pi * leftHz * at));
                output[1][index] =
                    static_cast<float>(level * std::sin(2 * std::numbers::pi * rightHz * at));
            }
        };
    }

    Rig rig;
};

} // namespace velmora
