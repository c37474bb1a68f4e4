#include "presets/PresetStore.h"

#include "presets/PresetJson.h"
#include "presets/PresetNames.h"
#include "presets/PresetRecall.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

namespace velmora {

namespace {

constexpr std::string_view presetsKey = "presets";
constexpr std::string_view activeKey = "activePresetID";

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

PresetStore::PresetStore(DefaultsStore& defaults) : defaults_(defaults), setAside_(defaults) {
    load();
}

void PresetStore::load() {
    if (const auto kept = defaults_.get(presetsKey)) {
        if (auto presets = decodedValue(*kept)) {
            presets_ = std::move(*presets);
        } else {
            setAside_.add(*kept);
        }
    }
    const auto id = Uuid::parse(defaults_.read<std::string>(activeKey).value_or(""));
    if (id && presetWithID(presets_, *id) != nullptr) {
        activeID_ = id;
    }
}

const Preset* PresetStore::active() const {
    return activeID_ ? presetWithID(presets_, *activeID_) : nullptr;
}

DisplacedPresets PresetStore::save(Preset preset) {
    DisplacedPresets displaced{.activeBefore = activeID_};
    const auto namesake = std::ranges::find(presets_, preset.name, &Preset::name);
    if (namesake == presets_.end()) {
        activeID_ = preset.id;
        presets_.push_back(std::move(preset));
    } else {
        preset.id = namesake->id;
        activeID_ = preset.id;
        displaced.wereReplaced = true;
        displaced.entries.push_back(
            {std::exchange(*namesake, std::move(preset)),
             static_cast<std::size_t>(std::distance(presets_.begin(), namesake))});
    }
    displaced.activeAfter = activeID_;
    persist();
    return displaced;
}

DisplacedPresets PresetStore::remove(const Uuid& id) {
    DisplacedPresets displaced{.activeBefore = activeID_};
    for (std::size_t index = 0; index < presets_.size(); ++index) {
        if (presets_[index].id == id) {
            displaced.entries.push_back({presets_[index], index});
        }
    }
    std::erase_if(presets_, [id](const Preset& preset) { return preset.id == id; });
    if (activeID_ == id) {
        activeID_.reset();
    }
    displaced.activeAfter = activeID_;
    persist();
    return displaced;
}

void PresetStore::removeAll(std::span<const Uuid> ids) {
    std::erase_if(presets_, [ids](const Preset& preset) {
        return std::ranges::find(ids, preset.id) != ids.end();
    });
    if (active() == nullptr) {
        activeID_.reset();
    }
    persist();
}

std::vector<Uuid> PresetStore::add(std::vector<Preset> presets) {
    std::vector<Uuid> ids;
    for (Preset& preset : presets) {
        preset.id = Uuid::random();
        preset.name = freePresetName(presets_, preset.name);
        ids.push_back(preset.id);
        presets_.push_back(std::move(preset));
    }
    persist();
    return ids;
}

void PresetStore::bringBackSetAside() {
    for (Preset preset : setAside_.readable()) {
        const auto* const known = presetWithID(presets_, preset.id);
        if (known != nullptr && *known == preset) {
            continue; // brought back before, by a launch that did not come to its end
        }
        if (known != nullptr) {
            preset.id = Uuid::random();
        }
        preset.name = freePresetName(presets_, preset.name);
        presets_.push_back(std::move(preset));
    }
    if (persist()) {
        setAside_.forgetReadable();
        changed_.emit();
    }
}

void PresetStore::markSetAsideTold() {
    setAside_.markTold();
    changed_.emit();
}

void PresetStore::bringBack(const DisplacedPresets& displaced) {
    for (auto [preset, index] : displaced.entries) {
        const auto successor = displaced.wereReplaced
                                   ? std::ranges::find(presets_, preset.id, &Preset::id)
                                   : presets_.end();
        if (successor != presets_.end()) {
            *successor = std::move(preset);
            continue;
        }
        preset.name = freePresetName(presets_, preset.name);
        const auto place = static_cast<std::ptrdiff_t>(std::min(index, presets_.size()));
        presets_.insert(presets_.begin() + place, std::move(preset));
    }
    if (activeID_ == displaced.activeAfter) {
        activeID_ = displaced.activeBefore;
        if (active() == nullptr) {
            activeID_.reset();
        }
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

bool PresetStore::persist() {
    const auto json = encodePresets(presets_);
    if (json) {
        defaults_.set(presetsKey, Bytes(json->begin(), json->end()));
    }
    if (activeID_) {
        defaults_.set(activeKey, activeID_->string());
    } else {
        defaults_.remove(activeKey);
    }
    changed_.emit();
    return json.has_value();
}

} // namespace velmora
