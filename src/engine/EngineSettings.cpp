#include "engine/EngineSettings.h"

#include "platform/DefaultsStore.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace velmora {
namespace {

constexpr std::string_view gainsKey = "sourceGains";
constexpr std::string_view muteDirectKey = "sourceMuteDirect";
constexpr std::string_view fxKey = "sourceFX";
constexpr std::string_view headphoneVolumeKey = "headphoneVolume";
constexpr std::string_view streamVolumeKey = "streamVolume";
constexpr std::string_view monitoringSelectionKey = "monitoringSelection";

constexpr double unity = 1.0;

template <typename T>
std::optional<T> valueOf(const std::map<std::string, T>& map, const std::string& id) {
    const auto found = map.find(id);
    return found == map.end() ? std::nullopt : std::optional(found->second);
}

float readVolume(const DefaultsStore& store, std::string_view key) {
    return static_cast<float>(store.read<double>(key).value_or(unity));
}

std::map<std::string, float> readGains(const DefaultsStore& store) {
    std::map<std::string, float> gains;
    for (const auto& [id, gain] : store.read<NumberMap>(gainsKey).value_or(NumberMap{})) {
        gains[id] = static_cast<float>(gain);
    }
    return gains;
}

} // namespace

std::string gainBeforeMuteKey(const std::string& id) {
    return "sourceGain.premute." + id;
}

EngineSettings::EngineSettings(DefaultsStore& store)
    : store_(store), headphoneVolume_(readVolume(store, headphoneVolumeKey)),
      streamVolume_(readVolume(store, streamVolumeKey)) {
    setMonitoringSelection(store.read<std::string>(monitoringSelectionKey));
    gains_ = readGains(store);
    fx_ = FXParamsStore(store.read<Bytes>(fxKey).value_or(Bytes{}));
    muteDirect_ = store.read<BooleanMap>(muteDirectKey).value_or(BooleanMap{});
}

std::optional<float> EngineSettings::gain(const std::string& id) const {
    return valueOf(gains_, id);
}

std::optional<FXParams> EngineSettings::fxOf(const std::string& id) const {
    return valueOf(fx_.params(), id);
}

std::optional<bool> EngineSettings::muteDirect(const std::string& id) const {
    return valueOf(muteDirect_, id);
}

void EngineSettings::setGain(const std::string& id, float gain) {
    gains_[id] = gain;
    storeGains();
}

void EngineSettings::setFX(const std::string& id, const FXParams& params) {
    fx_.set(id, params);
    storeFX();
}

void EngineSettings::setMuteDirect(const std::string& id, bool muted) {
    muteDirect_[id] = muted;
    store_.set(muteDirectKey, muteDirect_);
}

void EngineSettings::copy(const std::string& from, const std::string& to) {
    forget({to});
    if (const auto kept = gain(from)) {
        setGain(to, *kept);
    }
    if (const auto kept = fxOf(from)) {
        setFX(to, *kept);
    }
    if (const auto kept = muteDirect(from)) {
        setMuteDirect(to, *kept);
    }
    if (const auto kept = store_.read<double>(gainBeforeMuteKey(from))) {
        store_.set(gainBeforeMuteKey(to), *kept);
    }
}

std::set<std::string> EngineSettings::ids() const {
    std::set<std::string> ids;
    const auto add = [&](const auto& map) {
        for (const auto& [id, value] : map) {
            ids.insert(id);
        }
    };
    add(gains_);
    add(fx_.params());
    add(muteDirect_);
    return ids;
}

void EngineSettings::forget(const std::set<std::string>& ids) {
    const auto isForgotten = [&](const auto& one) { return ids.contains(one.first); };
    if (std::erase_if(gains_, isForgotten) > 0) {
        storeGains();
    }
    if (std::erase_if(muteDirect_, isForgotten) > 0) {
        store_.set(muteDirectKey, muteDirect_);
    }
    if (std::ranges::any_of(fx_.params(), isForgotten)) {
        for (const std::string& id : ids) {
            fx_.set(id, FXParams{});
        }
        storeFX();
    }
    for (const std::string& id : ids) {
        if (store_.get(gainBeforeMuteKey(id))) {
            store_.remove(gainBeforeMuteKey(id));
        }
    }
}

void EngineSettings::storeGains() {
    store_.set(gainsKey, NumberMap(gains_.begin(), gains_.end()));
}

void EngineSettings::storeFX() {
    if (auto bytes = fx_.encoded()) {
        store_.set(fxKey, std::move(*bytes));
    }
}

void EngineSettings::setHeadphoneVolume(float volume) {
    headphoneVolume_ = volume;
    store_.set(headphoneVolumeKey, double{volume});
}

void EngineSettings::setStreamVolume(float volume) {
    streamVolume_ = volume;
    store_.set(streamVolumeKey, double{volume});
}

void EngineSettings::setMonitoringSelection(std::optional<std::string> selection) {
    monitoringSelection_ = std::move(selection);
    if (monitoringSelection_) {
        store_.set(monitoringSelectionKey, *monitoringSelection_);
    } else {
        store_.remove(monitoringSelectionKey);
    }
}

} // namespace velmora
