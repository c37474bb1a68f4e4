#include "durability/Change.h"

#include "presets/PresetSnapshot.h"

#include <algorithm>

namespace velmora {
namespace {

class Performance {
public:
    explicit Performance(Mixer& mixer) : mixer_(mixer) {}

    void operator()(const SetGain& change) const {
        mixer_.engine.setGain(change.gain, source(change.source));
    }
    void operator()(const SetFX& change) const {
        mixer_.engine.setFX(change.fx, source(change.source));
    }
    void operator()(const SetDirectMuted& change) const {
        mixer_.engine.setDirectMuted(change.muted, source(change.source));
    }
    void operator()(const SetHeadphoneVolume& change) const {
        mixer_.engine.setHeadphoneVolume(change.volume);
    }
    void operator()(const SetStreamVolume& change) const {
        mixer_.engine.setStreamVolume(change.volume);
    }
    void operator()(const SetMonitoring& change) const {
        mixer_.engine.setMonitoringSelection(change.selection);
    }

    void operator()(const SavePreset& change) const {
        std::vector<AudioSource> sources;
        for (const std::size_t index : change.sources) {
            sources.push_back(source(index));
        }
        mixer_.engine.replaceSources(sources);
        Preset preset = snapshotPreset(mixer_.engine, mixer_.platform.devices, change.name);
        preset.id = change.id; // instead of a fresh one, which nobody could predict
        mixer_.presets.save(preset);
    }
    void operator()(const RemovePreset& change) const {
        if (const auto preset = named(change.name)) {
            mixer_.presets.remove(preset->id);
        }
    }
    void operator()(const ApplyPreset& change) const {
        if (const auto preset = named(change.name)) {
            mixer_.recall.apply(*preset, {.launchClosedApps = true, .quiet = false});
            mixer_.presets.setActive(preset->id);
        }
    }
    void operator()(const Launch& /*change*/) const {
        mixer_.engine.replaceSources(mixer_.studio.sources());
        mixer_.engine.start();
        mixer_.presets.restoreActive(mixer_.recall);
    }

private:
    [[nodiscard]] const AudioSource& source(std::size_t index) const {
        return mixer_.studio.sources()[index];
    }
    [[nodiscard]] std::optional<Preset> named(const std::string& name) const {
        const auto& presets = mixer_.presets.presets();
        const auto found = std::ranges::find(presets, name, &Preset::name);
        return found == presets.end() ? std::nullopt : std::optional(*found);
    }

    Mixer& mixer_;
};

} // namespace

void perform(const Change& change, Mixer& mixer) {
    std::visit(Performance(mixer), change);
}

} // namespace velmora
