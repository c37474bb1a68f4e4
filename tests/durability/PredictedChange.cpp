// What each change is to leave in the store, from the rules alone.
#include "durability/Change.h"

#include <algorithm>

namespace velmora {
namespace {

class Prediction {
public:
    Prediction(const std::vector<AudioSource>& sources,
               KeptSettings& kept,
               const std::function<void()>& written)
        : sources_(sources), kept_(kept), written_(written) {}

    void operator()(const SetGain& change) const { keepGain(id(change.source), change.gain); }
    void operator()(const SetFX& change) const { keepFX(id(change.source), change.fx); }

    void operator()(const SetDirectMuted& change) const {
        if (change.muted) {
            kept_.muted.insert(id(change.source));
        } else {
            kept_.muted.erase(id(change.source));
        }
        written_();
    }
    void operator()(const SetHeadphoneVolume& change) const {
        kept_.headphoneVolume = change.volume;
        written_();
    }
    void operator()(const SetStreamVolume& change) const {
        kept_.streamVolume = change.volume;
        written_();
    }
    void operator()(const SetMonitoring& change) const {
        kept_.monitoring = change.selection;
        written_();
    }

    void operator()(const SavePreset& change) const {
        Preset preset{.id = change.id,
                      .name = change.name,
                      .headphoneVolume = kept_.headphoneVolume,
                      .streamVolume = kept_.streamVolume};
        for (const std::size_t index : change.sources) {
            preset.sources.push_back(snapshot(index));
        }
        if (const auto place = named(change.name); place != kept_.presets.end()) {
            preset.id = place->id;
            *place = preset;
        } else {
            kept_.presets.push_back(preset);
        }
        written_();
        activate(preset.id);
    }
    void operator()(const RemovePreset& change) const {
        const auto place = named(change.name);
        if (place == kept_.presets.end()) {
            return;
        }
        const Uuid removed = place->id;
        kept_.presets.erase(place);
        written_();
        if (kept_.activeID == removed) {
            activate(std::nullopt);
        }
    }
    void operator()(const ApplyPreset& change) const {
        if (const auto place = named(change.name); place != kept_.presets.end()) {
            recall(*place);
            activate(place->id);
        }
    }
    void operator()(const Launch& /*change*/) const {
        if (kept_.activeID) {
            recall(*std::ranges::find(kept_.presets, *kept_.activeID, &Preset::id));
        }
    }

private:
    [[nodiscard]] std::string id(std::size_t source) const { return sources_[source].id(); }

    void keepGain(const std::string& source, float gain) const {
        kept_.gains[source] = gain;
        written_();
    }
    void keepFX(const std::string& source, const FXParams& fx) const {
        if (fx == FXParams{}) {
            kept_.fx.erase(source);
        } else {
            kept_.fx[source] = fx;
        }
        written_();
    }
    void activate(const std::optional<Uuid>& preset) const {
        kept_.activeID = preset;
        written_();
    }

    [[nodiscard]] std::vector<Preset>::iterator named(const std::string& name) const {
        return std::ranges::find(kept_.presets, name, &Preset::name);
    }

    /// What identifies the source in a preset.
    [[nodiscard]] PresetSource keyOf(std::size_t index) const {
        const AudioSource& source = sources_[index];
        if (const auto* app = source.app()) {
            return {.kind = PresetSource::Kind::app, .name = app->name, .bundleID = app->bundleID};
        }
        if (const auto* channels = source.deviceChannels()) {
            return {.kind = PresetSource::Kind::deviceChannels,
                    .name = channels->name,
                    .deviceUID = "interface",
                    .first = channels->first,
                    .count = channels->count};
        }
        return {
            .kind = PresetSource::Kind::device, .name = source.name(), .deviceUID = "interface"};
    }
    [[nodiscard]] PresetSource snapshot(std::size_t index) const {
        PresetSource source = keyOf(index);
        if (const auto gain = kept_.gains.find(id(index)); gain != kept_.gains.end()) {
            source.gain = gain->second;
        }
        if (const auto fx = kept_.fx.find(id(index)); fx != kept_.fx.end()) {
            source.fx = fx->second;
        }
        return source;
    }
    [[nodiscard]] std::string idOf(PresetSource kept) const {
        kept.gain = 1;
        kept.fx.reset();
        std::size_t index = 0;
        while (keyOf(index) != kept) {
            ++index;
        }
        return id(index);
    }

    void recall(const Preset& preset) const {
        for (const auto& source : preset.sources) {
            keepGain(idOf(source), source.gain);
            keepFX(idOf(source), source.fx.value_or(FXParams{}));
        }
        kept_.headphoneVolume = preset.headphoneVolume;
        written_();
        kept_.streamVolume = preset.streamVolume;
        written_();
    }

    const std::vector<AudioSource>& sources_;
    KeptSettings& kept_;
    const std::function<void()>& written_;
};

} // namespace

void predict(const Change& change,
             const std::vector<AudioSource>& sources,
             KeptSettings& kept,
             const std::function<void()>& written) {
    std::visit(Prediction(sources, kept, written), change);
}

} // namespace velmora
