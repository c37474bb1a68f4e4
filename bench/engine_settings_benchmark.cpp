// engine_settings_benchmark.cpp: what one step of a dragged control costs the main thread, from the
// engine's operation to the file.
#include "SettingsFile.h"
#include "WriteTimes.h"

#include "engine/AudioEngine.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "presets/PresetSnapshot.h"
#include "presets/PresetStore.h"

#include <benchmark/benchmark.h>
#include <cstdint>
#include <string>
#include <vector>

namespace {

using namespace velmora;

/// A running mix of 30 applications, each with a gain and effects of its own.
class LargeMix {
public:
    static constexpr int sourceCount = 30;

    LargeMix() {
        machine_.addSpeakers();
        machine_.addVirtualMic();
        for (std::int32_t pid = 40'000; pid < 40'000 + sourceCount; ++pid) {
            const AppSource app{
                pid, "Application", "org.example.Application" + std::to_string(pid)};
            machine_.startApplication(pid, app.name, app.bundleID);
            machine_.sound.play(pid, silence());
            engine.setGain(0.7071F, app);
            engine.setFX(voice, app);
            engine.add(app);
        }
        engine.start();
    }

    static constexpr FXParams voice{.lowcut = 1,
                                    .tilt = 0.123F,
                                    .comp = 2,
                                    .autoGain = false,
                                    .manualDB = -3.21F,
                                    .reverbChar = 1,
                                    .reverbMix = 0.0731F,
                                    .plosive = true,
                                    .denoise = true};

private:
    [[nodiscard]] Platform platform() {
        const Platform machine = machine_.platform();
        return {.devices = machine.devices,
                .taps = machine.taps,
                .sinks = machine.sinks,
                .units = machine.units,
                .applications = machine.applications,
                .defaults = file.store,
                .mainQueue = machine.mainQueue,
                .appearance = machine.appearance,
                .loginItem = machine.loginItem,
                .shortcuts = machine.shortcuts,
                .notices = machine.notices};
    }

    SimulatedPlatform machine_;

public:
    [[nodiscard]] Preset preset(const std::string& name) {
        return snapshotPreset(engine, machine_.devices, name);
    }

    SettingsFile file;
    AudioEngine engine{platform()};
};

void setGain(benchmark::State& state) {
    LargeMix mix;
    const AudioSource source = mix.engine.sources().back();
    timeWrites(state, [&](double value) { mix.engine.setGain(static_cast<float>(value), source); });
}
BENCHMARK(setGain)->Unit(benchmark::kMicrosecond);

void setFX(benchmark::State& state) {
    LargeMix mix;
    const AudioSource source = mix.engine.sources().back();
    FXParams params = LargeMix::voice;
    timeWrites(state, [&](double value) {
        params.manualDB = static_cast<float>(value);
        mix.engine.setFX(params, source);
    });
}
BENCHMARK(setFX)->Unit(benchmark::kMicrosecond);

void setHeadphoneVolume(benchmark::State& state) {
    LargeMix mix;
    timeWrites(state,
               [&](double value) { mix.engine.setHeadphoneVolume(static_cast<float>(value)); });
}
BENCHMARK(setHeadphoneVolume)->Unit(benchmark::kMicrosecond);

/// The twenty-first save under a name that is there.
void savePreset(benchmark::State& state) {
    LargeMix mix;
    PresetStore presets(mix.file.store);
    const auto sources = static_cast<std::size_t>(state.range(0));
    Preset preset = mix.preset("");
    preset.sources.resize(sources);
    for (int number = 0; number < 20; ++number) {
        preset.name = "Setup " + std::to_string(number);
        preset.id = Uuid::random();
        presets.save(preset);
    }
    timeWrites(state, [&](double value) {
        preset.streamVolume = static_cast<float>(value);
        presets.save(preset);
    });
}
BENCHMARK(savePreset)->ArgName("sources")->Arg(4)->Arg(30)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
