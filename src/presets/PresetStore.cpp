#include "presets/PresetStore.h"

#include "presets/PresetJson.h"
#include "presets/PresetRecall.h"

#include <algorithm>
#include <string>
#include <utility>

namespace velmora {

namespace {

constexpr std::string_view presetsKey = "presets";
constexpr std::string_view activeKey = "activePresetID";
constexpr std::string_view unreadableKey = "presets.unreadable";

std::optional<std::vector<Preset>> decodedValue(const DefaultsValue& value) {
    const auto* const bytes = std::get_if<Bytes>(&value);
    if (bytes == nullptr) {
        return std::nullopt;
    }
    return decodePresets(std::string(bytes->begin(), bytes->end()));
}

const Preset* presetWithID(const std::vector<Preset>& presets, const Uuid& id) {
    const auto found = std::ranges::find(presets, id, &Preset::id);
    return found == presets.end() ? nullptr : &*found;
}

} // namespace

PresetStore::PresetStore(DefaultsStore& defaults) : defaults_(defaults) {
    load();
}

void PresetStore::load() {
    if (const auto kept = defaults_.get(presetsKey)) {
        if (auto presets = decodedValue(*kept)) {
            presets_ = std::move(*presets);
        } else {
            setAside(*kept);
        }
    }
    const auto id = Uuid::parse(defaults_.read<std::string>(activeKey).value_or(""));
    if (id && presetWithID(presets_, *id) != nullptr) {
        activeID_ = id;
    }
}

void PresetStore::setAside(const DefaultsValue& unreadable) {
    std::string key(unreadableKey);
    for (int copy = 2; const auto earlier = defaults_.get(key); ++copy) {
        if (*earlier == unreadable) {
            return;
        }
        key = std::string(unreadableKey) + "." + std::to_string(copy);
    }
    defaults_.set(key, unreadable);
}

const Preset* PresetStore::active() const {
    return activeID_ ? presetWithID(presets_, *activeID_) : nullptr;
}

void PresetStore::save(Preset preset) {
    const auto namesake = std::ranges::find(presets_, preset.name, &Preset::name);
    if (namesake == presets_.end()) {
        activeID_ = preset.id;
        presets_.push_back(std::move(preset));
    } else {
        preset.id = namesake->id;
        activeID_ = preset.id;
        *namesake = std::move(preset);
    }
    persist();
}

void PresetStore::remove(const Uuid& id) {
    std::erase_if(presets_, [id](const Preset& preset) { return preset.id == id; });
    if (activeID_ == id) {
        activeID_.reset();
    }
    persist();
}

void PresetStore::setActive(const Uuid& id) {
    activeID_ = id;
    persist();
}

void PresetStore::restoreActive(PresetRecall& recall) {
    if (std::exchange(didRestore_, true)) {
        return;
    }
    if (const auto* const preset = active()) {
        recall.apply(*preset, {.launchClosedApps = false, .quiet = true, .awaitDevices = true});
    }
}

void PresetStore::persist() {
    if (const auto json = encodePresets(presets_)) {
        defaults_.set(presetsKey, Bytes(json->begin(), json->end()));
    }
    if (activeID_) {
        defaults_.set(activeKey, activeID_->string());
    } else {
        defaults_.remove(activeKey);
    }
    changed_.emit();
}

} // namespace velmora
