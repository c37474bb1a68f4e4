#include "presets/PresetSnapshot.h"

#include "capture/DeviceQueries.h"
#include "engine/AudioEngine.h"

#include <utility>

namespace velmora {

namespace {

/// Writes down, for each case of a source, the keys under which it can be found again.
struct KeyTaker {
    const AudioDevices& devices;

    PresetSource operator()(const AppSource& app) const {
        return {.kind = PresetSource::Kind::app, .name = app.name, .bundleID = app.bundleID};
    }
    PresetSource operator()(const DeviceSource& device) const {
        return {.kind = PresetSource::Kind::device,
                .name = device.name,
                .deviceUID = deviceUID(devices, device.id)};
    }
    PresetSource operator()(const DeviceChannelsSource& channels) const {
        return {.kind = PresetSource::Kind::deviceChannels,
                .name = channels.name,
                .deviceUID = deviceUID(devices, channels.id),
                .first = channels.first,
                .count = channels.count};
    }
};

} // namespace

Preset snapshotPreset(const AudioEngine& engine, const AudioDevices& devices, std::string name) {
    Preset preset{.id = Uuid::random(),
                  .name = std::move(name),
                  .headphoneVolume = engine.headphoneVolume(),
                  .streamVolume = engine.streamVolume()};
    for (const auto& source : engine.sources()) {
        auto taken = std::visit(KeyTaker{devices}, source.value());
        taken.gain = engine.gain(source);
        taken.fx = engine.storedFX(source);
        preset.sources.push_back(std::move(taken));
    }
    return preset;
}

} // namespace velmora
