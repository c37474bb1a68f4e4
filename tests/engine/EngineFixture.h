// EngineFixture.h: an engine on a machine with speakers, a virtual microphone and sources.
#pragma once

#include "engine/AudioEngine.h"
#include "platform/simulated/SimulatedPlatform.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace velmora {

/// Levels in these tests stay below the limiter's ceiling of 0.89 unless the limiter is meant.
class EngineFixture : public testing::Test {
protected:
    static constexpr std::int32_t playerPid = 4711;
    static constexpr std::int32_t browserPid = 4712;

    EngineFixture() {
        machine.startApplication(playerPid, "Player", "org.player");
        machine.startApplication(browserPid, "Browser", "org.browser");
        machine.sound.play(playerPid, constant(0.25F));
        machine.sound.play(browserPid, constant(0.125F));
        machine.sound.setInput(interface4, channelNumbers(0.0625F));
    }

    /// What a device's channel (1-based) plays during the next block.
    float next(AudioObjectID device, std::size_t channel) {
        machine.sound.forgetHeard();
        machine.advanceCycles(1);
        const auto heard = machine.sound.heard(device, channel);
        return heard.empty() ? -1.0F : heard.back();
    }
    /// What the virtual microphone carries.
    float nextInMic() { return next(mic, 1); }
    /// What the monitoring output adds to a device that the applications play on as well.
    float nextMonitored() { return next(speakers, 1) - applicationsOnSpeakers; }

    void startWith(const std::vector<AudioSource>& sources) {
        engine.replaceSources(sources);
        engine.start();
    }

    /// Effects that do nothing but set the level.
    static FXParams manualGain(float db) {
        FXParams params;
        params.autoGain = false;
        params.manualDB = db;
        return params;
    }

    /// How many times a mix has been built: each build makes one tap per application.
    std::size_t tapsMade() { return machine.sound.openedTaps().size(); }

    SimulatedPlatform machine;
    AudioObjectID speakers = machine.addSpeakers();
    AudioObjectID mic = machine.addVirtualMic();
    AudioObjectID interface4 = machine.sound.addDevice(
        {.uid = "interface", .name = "Interface", .outputs = {4}, .inputs = {4}});
    const AudioSource player = AppSource{playerPid, "Player", "org.player"};
    const AudioSource browser = AppSource{browserPid, "Browser", "org.browser"};
    const AudioSource wholeInput = DeviceSource{interface4, "Interface"};
    const AudioSource thirdPair = DeviceChannelsSource{interface4, 3, 2, "Interface 3-4"};
    const float applicationsOnSpeakers = 0.25F + 0.125F;
    AudioEngine engine{machine.platform()};
    const SimulatedSound::Census nothingRuns{};
};

} // namespace velmora
