#include "operations/MixerControl.h"

#include "capture/SourceManager.h"
#include "engine/AudioEngine.h"
#include "engine/Sentence.h"
#include "operations/ChannelChoices.h"
#include "operations/DeviceOptions.h"
#include "operations/EffectWords.h"
#include "operations/MuteToggle.h"
#include "operations/Numbers.h"
#include "operations/ProblemText.h"
#include "operations/PushToTalk.h"
#include "operations/TextFile.h"
#include "platform/DefaultsStore.h"
#include "platform/GlobalShortcuts.h"
#include "presets/PresetFile.h"
#include "presets/PresetRecall.h"
#include "presets/PresetSnapshot.h"
#include "presets/PresetStore.h"
#include "settings/AppSettings.h"

#include <utility>

namespace velmora {

namespace {

constexpr std::string_view noPresetYet =
    "Il n'y a pas encore de preset. « velmora preset save NOM » garde le setup actuel.";

bool isOnAfter(Switch wanted, bool isOn) {
    return wanted == Switch::toggle ? !isOn : wanted == Switch::on;
}

NamedChoice named(const AudioSource& source, std::string shownName) {
    const auto* const app = source.app();
    return {.id = source.id(),
            .name = std::move(shownName),
            .alias = app == nullptr ? std::string{} : app->bundleID};
}

std::vector<NamedChoice> choicesOf(std::span<const OfferedSource> offered) {
    std::vector<NamedChoice> choices;
    for (const OfferedSource& one : offered) {
        choices.push_back(named(one.source, one.name));
    }
    return choices;
}

std::vector<NamedChoice> choicesOf(std::span<const MonitorOffer> offers) {
    std::vector<NamedChoice> choices;
    for (const MonitorOffer& one : offers) {
        choices.push_back({.id = one.tag, .name = one.name});
    }
    return choices;
}

std::string_view withoutBlanksAround(std::string_view text) {
    constexpr std::string_view blanks = " \t";
    const auto first = text.find_first_not_of(blanks);
    return first == text.npos ? std::string_view{}
                              : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

} // namespace

Refusal MixerControl::refusal(std::string_view text,
                              std::string_view name,
                              std::string_view command) const {
    return {Refusal::Kind::refused,
            filled(parts_.settings.t(text), {{"{name}", name}, {"{command}", command}})};
}

Answer<std::size_t> MixerControl::find(std::span<const NamedChoice> choices,
                                       std::string_view word,
                                       std::string_view command) const {
    const auto found = chosen(choices, word);
    if (found) {
        return *found;
    }
    return std::unexpected(
        found.error() == NameMiss::none
            ? refusal("« {name} » est introuvable. « velmora {command} » montre ce qu'il y a.",
                      word,
                      command)
            : refusal("« {name} » peut en désigner plusieurs. « velmora {command} » donne leurs "
                      "numéros.",
                      word,
                      command));
}

Answer<> MixerControl::switchMix(Switch wanted) {
    AudioEngine& engine = parts_.engine;
    const bool isOn = engine.isRunning();
    if (isOnAfter(wanted, isOn) == isOn) {
        return {};
    }
    if (isOn) {
        engine.stop();
        return {};
    }
    engine.start();
    if (!engine.isRunning()) {
        return std::unexpected(
            Refusal{Refusal::Kind::refused,
                    problemText(engine, parts_.platform.defaults.problems(), parts_.settings)});
    }
    return {};
}

void MixerControl::bypass(Switch wanted) {
    parts_.engine.setFxBypassed(isOnAfter(wanted, parts_.engine.fxBypassed()));
}

std::vector<OfferedSource> MixerControl::available() {
    SourceManager& sources = parts_.sources;
    sources.refresh();
    std::vector<OfferedSource> offered;
    for (const AudioSource& app : sources.runningApps()) {
        offered.push_back({app, app.name(), sources.playingPIDs().contains(app.app()->pid)});
    }
    for (const InputDeviceInfo& device : sources.inputDeviceInfos()) {
        offered.push_back({DeviceSource{device.deviceID, device.name}, device.name, false});
        for (ChannelChoice& range : channelChoices(device, parts_.settings)) {
            std::string name = shownName(range.source, parts_.settings);
            offered.push_back({std::move(range.source), std::move(name), false});
        }
    }
    return offered;
}

Answer<> MixerControl::add(std::string_view word) {
    const auto offered = available();
    const auto found = find(choicesOf(offered), word, "available");
    if (!found) {
        return std::unexpected(found.error());
    }
    parts_.engine.add(offered[*found].source);
    return {};
}

std::vector<NamedChoice> MixerControl::sourceChoices() const {
    std::vector<NamedChoice> choices;
    for (const AudioSource& one : parts_.engine.sources()) {
        choices.push_back(named(one, shownName(one, parts_.settings)));
    }
    return choices;
}

Answer<AudioSource> MixerControl::source(std::string_view word) const {
    return then(find(sourceChoices(), word, "sources"),
                [this](std::size_t index) -> Answer<AudioSource> {
                    return parts_.engine.sources()[index];
                });
}

Answer<> MixerControl::remove(std::string_view word) {
    return then(source(word), [this](const AudioSource& found) {
        parts_.engine.remove(found);
        return Answer<>();
    });
}

Answer<Fader> MixerControl::fader(std::string_view word) const {
    if (word != "microphone" && word != "headphones") {
        return std::unexpected(
            refusal("« {name} » n'est ni « microphone » ni « headphones ».", word));
    }
    return word == "microphone" ? Fader::microphone : Fader::headphones;
}

Answer<float> MixerControl::gain(double db) const {
    if (const auto linear = gainFromDb(db)) {
        return *linear;
    }
    return std::unexpected(Refusal{
        Refusal::Kind::refused,
        filled(parts_.settings.t("Un niveau va de {lowest} à {highest} dB ; -inf est le silence."),
               {{"{lowest}", numberText(lowestDb, 0)}, {"{highest}", numberText(highestDb, 0)}})});
}

Answer<> MixerControl::setGain(std::string_view word, double db) {
    const auto found = source(word);
    const auto linear = gain(db);
    if (!found || !linear) {
        return std::unexpected(found ? linear.error() : found.error());
    }
    parts_.engine.setGain(*linear, *found);
    return {};
}

Answer<> MixerControl::setGain(Fader fader, double db) {
    const auto linear = gain(db);
    if (!linear) {
        return std::unexpected(linear.error());
    }
    if (fader == Fader::microphone) {
        parts_.engine.setStreamVolume(*linear);
    } else {
        parts_.engine.setHeadphoneVolume(*linear);
    }
    return {};
}

Answer<> MixerControl::mute(std::string_view word, Switch wanted) {
    const auto found = source(word);
    if (!found) {
        return std::unexpected(found.error());
    }
    const float before = parts_.engine.gain(*found);
    if (isOnAfter(wanted, isMutedGain(before)) != isMutedGain(before)) {
        parts_.engine.setGain(toggledGain(parts_.platform.defaults, premuteKey(*found), before),
                              *found);
    }
    return {};
}

void MixerControl::mute(Fader fader, Switch wanted) {
    AudioEngine& engine = parts_.engine;
    const bool isMicrophone = fader == Fader::microphone;
    const float before = isMicrophone ? engine.streamVolume() : engine.headphoneVolume();
    if (isOnAfter(wanted, isMutedGain(before)) == isMutedGain(before)) {
        return;
    }
    const float after = toggledGain(
        parts_.platform.defaults, isMicrophone ? streamPremuteKey : headphonePremuteKey, before);
    if (isMicrophone) {
        engine.setStreamVolume(after);
    } else {
        engine.setHeadphoneVolume(after);
    }
}

Answer<> MixerControl::silence(std::string_view word, Switch wanted) {
    const auto found = source(word);
    if (!found) {
        return std::unexpected(found.error());
    }
    if (found->app() == nullptr) {
        return std::unexpected(
            refusal("« {name} » n'est pas une application : seule une application joue sur les "
                    "enceintes.",
                    found->name()));
    }
    const bool isOn = parts_.engine.isDirectMuted(*found);
    if (isOnAfter(wanted, isOn) != isOn) {
        parts_.engine.setDirectMuted(!isOn, *found);
    }
    return {};
}

Answer<> MixerControl::pushToTalk(Switch wanted) {
    const bool isOn = isOnAfter(wanted, parts_.talk.isOn());
    if (isOn && parts_.platform.shortcuts.state() != GlobalShortcuts::State::bound) {
        return std::unexpected(
            refusal("Aucune touche ne pourrait ouvrir le micro : les raccourcis s'activent dans "
                    "les réglages de Velmora, là où le bureau en a."));
    }
    parts_.talk.setOn(isOn);
    return {};
}

Answer<> MixerControl::setEffects(std::string_view word,
                                  std::span<const std::pair<std::string, std::string>> changes) {
    const auto found = source(word);
    if (!found) {
        return std::unexpected(found.error());
    }
    Answer<FXParams> params = parts_.engine.fx(*found);
    for (const auto& [name, value] : changes) {
        params = withEffect(*params, name, value, parts_.settings);
        if (!params) {
            return std::unexpected(params.error());
        }
    }
    parts_.engine.setFX(*params, *found);
    return {};
}

Answer<> MixerControl::resetEffects(std::string_view word) {
    return then(source(word), [this](const AudioSource& found) {
        parts_.engine.setFX({}, found);
        return Answer<>();
    });
}

std::vector<MonitorOffer> MixerControl::monitors() {
    parts_.sources.refresh();
    const auto options =
        monitoringOptions(parts_.platform.devices, parts_.sources, parts_.settings);
    const std::string selection = parts_.engine.monitoringSelection().value_or("");
    std::vector<MonitorOffer> offers;
    for (const Choice& option : options) {
        offers.push_back(
            {.tag = option.value,
             .name = option.label,
             .isChosen = option.value == selection || option.value == selection + "#1"});
    }
    return offers;
}

Answer<> MixerControl::setMonitor(std::string_view word) {
    const auto offers = monitors();
    const auto found = find(choicesOf(offers), word, "monitor");
    if (!found) {
        return std::unexpected(found.error());
    }
    const std::string& tag = offers[*found].tag;
    parts_.engine.setMonitoringSelection(tag.empty() ? std::nullopt : std::optional(tag));
    return {};
}

std::vector<NamedChoice> MixerControl::presetChoices() const {
    std::vector<NamedChoice> choices;
    for (const Preset& one : parts_.presets.presets()) {
        choices.push_back({.id = one.id.string(), .name = one.name});
    }
    return choices;
}

Answer<std::size_t> MixerControl::preset(std::string_view word) const {
    return find(presetChoices(), word, "preset list");
}

Answer<std::vector<std::string>> MixerControl::names(std::string_view list) {
    if (list == "sources") {
        return distinctWords(sourceChoices());
    }
    if (list == "available") {
        return distinctWords(choicesOf(available()));
    }
    if (list == "devices") {
        return distinctWords(choicesOf(monitors()));
    }
    if (list == "presets") {
        return distinctWords(presetChoices());
    }
    Refusal unknown = refusal(
        "« {name} » n'est ni « sources » ni « available » ni « devices » ni « presets ».", list);
    unknown.kind = Refusal::Kind::misused;
    return std::unexpected(std::move(unknown));
}

void MixerControl::apply(std::size_t preset) {
    const Preset chosen = parts_.presets.presets()[preset];
    parts_.recall.apply(chosen, {.launchClosedApps = true, .quiet = false});
    parts_.presets.setActive(chosen.id);
}

Answer<> MixerControl::applyPreset(std::string_view word) {
    return then(preset(word), [this](std::size_t index) {
        apply(index);
        return Answer<>();
    });
}

Answer<> MixerControl::applyNextPreset() {
    const auto& presets = parts_.presets.presets();
    if (presets.empty()) {
        return std::unexpected(refusal(noPresetYet));
    }
    const auto* const active = parts_.presets.active();
    const auto after = active == nullptr
                           ? 0
                           : static_cast<std::size_t>(active - presets.data() + 1) % presets.size();
    apply(after);
    return {};
}

Answer<> MixerControl::savePreset(std::string_view name) {
    const auto trimmed = withoutBlanksAround(name);
    if (trimmed.empty()) {
        return std::unexpected(refusal("Un preset a besoin d'un nom."));
    }
    parts_.presets.save(
        snapshotPreset(parts_.engine, parts_.platform.devices, std::string(trimmed)));
    return {};
}

Answer<> MixerControl::removePreset(std::string_view word) {
    const auto found = preset(word);
    if (!found) {
        return std::unexpected(found.error());
    }
    const Uuid id = parts_.presets.presets()[*found].id;
    parts_.presets.remove(id);
    return {};
}

Answer<> MixerControl::exportPresets(const std::string& file,
                                     const std::optional<std::string>& word) {
    auto exported = parts_.presets.presets();
    if (word) {
        const auto found = preset(*word);
        if (!found) {
            return std::unexpected(found.error());
        }
        exported = {exported[*found]};
    }
    if (exported.empty()) {
        return std::unexpected(refusal(noPresetYet));
    }
    const auto text = encodePresetFile(exported);
    if (!text || !writeTextFile(file, *text)) {
        return std::unexpected(refusal("« {name} » ne peut pas être écrit.", file));
    }
    return {};
}

Answer<> MixerControl::importPresets(const std::string& file) {
    const auto text = readTextFile(file, largestPresetFile);
    if (!text) {
        return std::unexpected(refusal("« {name} » ne peut pas être lu.", file));
    }
    auto presets = decodePresetFile(*text);
    if (!presets) {
        return std::unexpected(
            refusal(presets.error() == PresetFileFault::newer
                        ? "« {name} » vient d'une version plus récente de Velmora."
                        : "« {name} » n'est pas un fichier de presets Velmora, ou est endommagé.",
                    file));
    }
    parts_.presets.add(*std::move(presets));
    return {};
}

} // namespace velmora
