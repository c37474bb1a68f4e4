#include "app/TerminalMixer.h"

#include "app/EffectsMenu.h"
#include "capture/DeviceQueries.h"
#include "capture/SourceManager.h"
#include "engine/AudioEngine.h"
#include "platform/Platform.h"
#include "presets/PresetRecall.h"
#include "presets/PresetSnapshot.h"
#include "presets/PresetStore.h"
#include "settings/AppSettings.h"
#include "settings/ErrorText.h"

#include <algorithm>
#include <cmath>

namespace velmora {
namespace {

constexpr float gainStepDb = 1.0F;
constexpr float lowestGainDb = -60.0F;
constexpr float highestGainDb = 6.0F;
constexpr std::size_t volumeStrips = 2;

/// One step louder or softer; one step below the lowest gain is silence.
float steppedGain(float linear, int direction) {
    if (!(linear > 0.0F)) {
        return direction > 0 ? std::pow(10.0F, lowestGainDb / 20.0F) : 0.0F;
    }
    const float db =
        std::round(20.0F * std::log10(linear)) + gainStepDb * static_cast<float>(direction);
    return db < lowestGainDb ? 0.0F : std::pow(10.0F, std::min(db, highestGainDb) / 20.0F);
}

std::vector<std::string> splitLines(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (start <= text.size()) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

std::string trimmed(const std::string& text) {
    constexpr std::string_view blanks = " \t";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

void dropLastCodePoint(std::string& text) {
    while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0U) == 0x80U) {
        text.pop_back();
    }
    if (!text.empty()) {
        text.pop_back();
    }
}

} // namespace

TerminalMixer::TerminalMixer(Parts parts) : parts_(parts) {
}

std::string TerminalMixer::t(const char* text) const {
    return parts_.settings.t(text);
}

void TerminalMixer::press(const KeyPress& key) {
    if (presetName_) {
        pressInName(key);
    } else if (menu_) {
        pressInMenu(key);
    } else {
        pressInMix(key);
    }
}

void TerminalMixer::pressInMix(const KeyPress& key) {
    using Kind = KeyPress::Kind;
    AudioEngine& engine = parts_.engine;
    switch (key.kind) {
    case Kind::up:
        return moveSelection(-1);
    case Kind::down:
        return moveSelection(1);
    case Kind::left:
        return changeGain(-1);
    case Kind::right:
        return changeGain(1);
    case Kind::character:
        break;
    default:
        return;
    }
    if (key.text == "q") {
        wantsToQuit_ = true;
    } else if (key.text == " ") {
        engine.isRunning() ? engine.stop() : engine.start();
    } else if (key.text == "a") {
        openSourceMenu();
    } else if (key.text == "p") {
        openPresetMenu();
    } else if (key.text == "o") {
        openMonitoringMenu();
    } else if (key.text == "b") {
        engine.setFxBypassed(!engine.fxBypassed());
    } else if (key.text == "l") {
        parts_.settings.setLanguage(parts_.settings.language() == "en" ? "fr" : "en");
    } else if (key.text == "e") {
        openEffectsMenu();
    } else if (key.text == "m") {
        withSelectedSource([&](const AudioSource& source) {
            engine.setDirectMuted(!engine.isDirectMuted(source), source);
        });
    } else if (key.text == "x") {
        withSelectedSource([&](const AudioSource& source) { engine.remove(source); });
    }
}

void TerminalMixer::pressInMenu(const KeyPress& key) {
    using Kind = KeyPress::Kind;
    switch (key.kind) {
    case Kind::up:
        return menu_->move(-1);
    case Kind::down:
        return menu_->move(1);
    case Kind::left:
        return menu_->adjust(-1);
    case Kind::right:
        return menu_->adjust(1);
    case Kind::backspace:
        return menu_->remove();
    case Kind::enter: {
        const auto choice = menu_->choice();
        menu_.reset();
        if (choice) {
            choice();
        }
        return;
    }
    case Kind::escape:
        return menu_.reset();
    case Kind::character:
        return;
    }
}

void TerminalMixer::pressInName(const KeyPress& key) {
    using Kind = KeyPress::Kind;
    switch (key.kind) {
    case Kind::character:
        *presetName_ += key.text;
        return;
    case Kind::backspace:
        return dropLastCodePoint(*presetName_);
    case Kind::enter:
        return savePreset();
    case Kind::escape:
        return presetName_.reset();
    default:
        return;
    }
}

void TerminalMixer::savePreset() {
    const std::string name = trimmed(*presetName_);
    presetName_.reset();
    if (!name.empty()) {
        parts_.presets.save(snapshotPreset(parts_.engine, parts_.platform.hardware, name));
    }
}

void TerminalMixer::moveSelection(int direction) {
    const std::size_t count = parts_.engine.sources().size() + volumeStrips;
    selected_ =
        (std::min(selected_, count - 1) + count + static_cast<std::size_t>(direction)) % count;
}

void TerminalMixer::changeGain(int direction) {
    AudioEngine& engine = parts_.engine;
    const auto& sources = engine.sources();
    if (selected_ < sources.size()) {
        const AudioSource source = sources[selected_];
        engine.setGain(steppedGain(engine.gain(source), direction), source);
    } else if (selected_ == sources.size()) {
        engine.setHeadphoneVolume(steppedGain(engine.headphoneVolume(), direction));
    } else {
        engine.setStreamVolume(steppedGain(engine.streamVolume(), direction));
    }
}

void TerminalMixer::withSelectedSource(const std::function<void(const AudioSource&)>& action) {
    const auto& sources = parts_.engine.sources();
    if (selected_ < sources.size()) {
        const AudioSource source = sources[selected_];
        action(source);
    }
}

void TerminalMixer::openSourceMenu() {
    parts_.sources.refresh();
    menu_.emplace(t("Ajouter une source"), [this] { return sourceItems(); });
}

void TerminalMixer::openEffectsMenu() {
    withSelectedSource([this](const AudioSource& source) {
        menu_.emplace(source.name(), [this, source] {
            return effectsItems(parts_.engine, source, [this](std::string_view text) {
                return parts_.settings.t(text);
            });
        });
    });
}

void TerminalMixer::openPresetMenu() {
    menu_.emplace("Presets", [this] { return presetItems(); });
}

void TerminalMixer::openMonitoringMenu() {
    parts_.sources.refresh();
    menu_.emplace("Monitoring", [this] { return monitoringItems(); });
}

std::vector<MenuItem> TerminalMixer::sourceItems() {
    std::vector<MenuItem> items;
    const auto offer = [&](const AudioSource& source, const std::string& text) {
        items.push_back({.text = text,
                         .choose = [this, source] { parts_.engine.add(source); },
                         .adjust = {},
                         .remove = {}});
    };
    for (const AudioSource& app : parts_.sources.runningApps()) {
        const bool plays = parts_.sources.playingPIDs().contains(app.app()->pid);
        offer(app, (plays ? "♪ " : "  ") + app.name());
    }
    for (const InputDeviceInfo& device : parts_.sources.inputDeviceInfos()) {
        offer(DeviceSource{device.deviceID, device.name}, device.name);
        for (std::int64_t first = 1; device.channels > 2 && first <= device.channels; first += 2) {
            const std::int64_t count = std::min<std::int64_t>(2, device.channels - first + 1);
            const std::string range = count == 1
                                          ? std::to_string(first)
                                          : std::to_string(first) + "-" + std::to_string(first + 1);
            const std::string name =
                device.name + " — " + t(count == 1 ? "Entrée" : "Entrées") + " " + range;
            offer(DeviceChannelsSource{device.deviceID, first, count, name}, "  " + name);
        }
    }
    return items;
}

std::vector<MenuItem> TerminalMixer::presetItems() {
    std::vector<MenuItem> items;
    items.push_back({.text = t("Enregistrer le setup actuel…"),
                     .choose = [this] { presetName_ = ""; },
                     .adjust = {},
                     .remove = {}});
    for (const Preset& preset : parts_.presets.presets()) {
        const bool active = parts_.presets.activeID() == preset.id;
        items.push_back({.text = (active ? "✓ " : "  ") + preset.name,
                         .choose =
                             [this, preset] {
                                 parts_.recall.apply(preset,
                                                     {.launchClosedApps = true, .quiet = false});
                                 parts_.presets.setActive(preset.id);
                             },
                         .adjust = {},
                         .remove = [this, id = preset.id] { parts_.presets.remove(id); }});
    }
    return items;
}

std::vector<MenuItem> TerminalMixer::monitoringItems() {
    constexpr std::int64_t mostChannels = 32;
    std::vector<MenuItem> items;
    const auto offer = [&](std::optional<std::string> selection, const std::string& text) {
        const bool chosen = parts_.engine.monitoringSelection() == selection;
        items.push_back(
            {.text = (chosen ? "✓ " : "  ") + text,
             .choose = [this, selection] { parts_.engine.setMonitoringSelection(selection); },
             .adjust = {},
             .remove = {}});
    };
    offer(std::nullopt, t("Sortie par défaut"));
    for (const InputDeviceInfo& device : parts_.sources.outputDeviceInfos()) {
        const auto uid = deviceUID(parts_.platform.hardware, device.deviceID);
        if (!uid) {
            continue;
        }
        const std::int64_t channels = std::min<std::int64_t>(device.channels, mostChannels);
        if (channels < 3) {
            offer(*uid + "#1", device.name);
            continue;
        }
        for (std::int64_t first = 1; first < channels; first += 2) {
            offer(*uid + "#" + std::to_string(first),
                  device.name + " — " + t("Sorties") + " " + std::to_string(first) + "-" +
                      std::to_string(first + 1));
        }
    }
    return items;
}

std::vector<StripView> TerminalMixer::strips() const {
    const AudioEngine& engine = parts_.engine;
    std::vector<StripView> result;
    for (const AudioSource& source : engine.sources()) {
        const auto level = engine.sourceLevels().find(source.id());
        result.push_back({.name = source.name(),
                          .level = level == engine.sourceLevels().end() ? 0.0F : level->second,
                          .gain = engine.gain(source),
                          .directMuted = engine.isDirectMuted(source),
                          .hasEffects = !engine.fxBypassed() && !engine.fx(source).isNeutral()});
    }
    result.push_back({.name = t("Casque"), .level = {}, .gain = engine.headphoneVolume()});
    result.push_back({.name = t("Micro virtuel"), .level = {}, .gain = engine.streamVolume()});
    result[std::min(selected_, result.size() - 1)].selected = true;
    return result;
}

MixerView TerminalMixer::view() const {
    MixerView view;
    view.title = "Velmora";
    view.state = parts_.engine.isRunning() ? t("En marche") : t("Arrêté");
    view.strips = strips();
    if (parts_.engine.lastError()) {
        view.notices = splitLines(errorText(*parts_.engine.lastError(), parts_.settings));
    }
    if (presetName_) {
        view.footer = {t("Nom du preset") + " : " + *presetName_ + "▏"};
    } else if (menu_) {
        view.footer = menu_->lines();
    } else {
        view.footer = {t("espace marche/arrêt · ↑↓ choisir · ←→ gain · a ajouter · x retirer"),
                       t("e effets · b sans effets · m muet direct · o monitoring · p presets · "
                         "l langue · q quitter")};
    }
    return view;
}

} // namespace velmora
