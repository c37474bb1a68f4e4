#include "operations/ShortcutKeys.h"

#include "engine/AudioEngine.h"
#include "engine/Sentence.h"
#include "operations/MuteToggle.h"
#include "operations/PushToTalk.h"
#include "platform/DefaultsStore.h"
#include "platform/Notices.h"
#include "presets/PresetStore.h"
#include "settings/AppSettings.h"

#include <array>
#include <utility>

namespace velmora {

namespace {

using State = GlobalShortcuts::State;

constexpr const char* wantedKey = "globalShortcuts";

struct KeyInfo {
    const char* id;
    const char* does;    ///< French; looked up
    const char* trigger; ///< a suggestion to the desktop
};

constexpr auto keyTable = std::to_array<KeyInfo>({
    {"mix", "Mettre le mix en marche ou l'arrêter", "CTRL+LOGO+x"},
    {"mute", "Couper le micro virtuel", "CTRL+LOGO+m"},
    {"talk", "Appuyer pour parler", "CTRL+LOGO+t"},
    {"bypass", "Contourner tous les effets", "CTRL+LOGO+b"},
    {"preset", "Rappeler le preset suivant", "CTRL+LOGO+n"},
});

} // namespace

ShortcutKeys::ShortcutKeys(const MixerParts& parts)
    : parts_(parts), control_(parts),
      desktopConnection_(parts.platform.shortcuts.changed().connect([this] { followDesktop(); })),
      talkConnection_(parts.talk.changed().connect([this] { changed_.emit(); })) {
    if (parts.platform.defaults.read<bool>(wantedKey).value_or(false)) {
        bind();
    }
}

ShortcutKeys::~ShortcutKeys() {
    desktopConnection_.disconnect();
    talkConnection_.disconnect();
    parts_.platform.shortcuts.unbind();
}

bool ShortcutKeys::areUsed() const {
    return state() == State::asked || state() == State::bound;
}

void ShortcutKeys::use(bool wanted) {
    parts_.platform.defaults.set(wantedKey, wanted);
    if (wanted) {
        bind();
    } else {
        parts_.talk.setOn(false);
        parts_.platform.shortcuts.unbind();
    }
}

void ShortcutKeys::bind() {
    std::vector<GlobalShortcut> wanted;
    for (const KeyInfo& key : keyTable) {
        wanted.push_back(
            {.id = key.id, .description = parts_.settings.t(key.does), .trigger = key.trigger});
    }
    parts_.platform.shortcuts.bind(
        std::move(wanted), [this](const std::string& id, bool isPressed) { press(id, isPressed); });
}

std::vector<ShortcutKeys::Key> ShortcutKeys::keys() const {
    const auto& triggers = parts_.platform.shortcuts.triggers();
    std::vector<Key> keys;
    for (const KeyInfo& key : keyTable) {
        const auto trigger = triggers.find(key.id);
        keys.push_back({.does = parts_.settings.t(key.does),
                        .trigger = trigger == triggers.end() ? "" : trigger->second});
    }
    return keys;
}

void ShortcutKeys::followDesktop() {
    if (state() == State::refused) {
        parts_.platform.defaults.set(wantedKey, false); // the user is not asked at every start
    }
    changed_.emit();
}

void ShortcutKeys::press(const std::string& id, bool isPressed) {
    if (id == "talk") {
        talk(isPressed);
    } else if (isPressed) {
        perform(id);
    }
}

void ShortcutKeys::perform(const std::string& id) {
    if (id == "mix") {
        const Answer<> answer = control_.switchMix(Switch::toggle);
        if (!answer) {
            parts_.platform.notices.show(answer.error().sentence);
            return;
        }
        say(parts_.engine.isRunning() ? "Le mix est en marche" : "Le mix est arrêté");
    } else if (id == "mute") {
        control_.mute(Fader::microphone, Switch::toggle);
        say(microphoneText());
    } else if (id == "bypass") {
        control_.bypass(Switch::toggle);
        say(parts_.engine.fxBypassed() ? "Effets contournés" : "Effets entendus");
    } else if (id == "preset") {
        const Answer<> answer = control_.applyNextPreset();
        parts_.platform.notices.show(answer ? filled(parts_.settings.t("Preset « {name} »"),
                                                     {{"{name}", parts_.presets.active()->name}})
                                            : answer.error().sentence);
    }
}

void ShortcutKeys::talk(bool isPressed) {
    parts_.talk.hold(isPressed);
    if (parts_.talk.isOn()) {
        say(microphoneText());
    } else if (isPressed) {
        say("Appuyer pour parler est désactivé : la touche ne change rien");
    }
}

void ShortcutKeys::say(const char* french) {
    parts_.platform.notices.show(parts_.settings.t(french));
}

/// What is heard of the microphone, and what it would take.
const char* ShortcutKeys::microphoneText() const {
    if (isMutedGain(parts_.engine.streamVolume())) {
        return "Le micro virtuel est coupé";
    }
    if (parts_.engine.isMicrophoneClosed()) {
        return "Le micro est fermé : tiens la touche pour parler";
    }
    return parts_.engine.isRunning() ? "Le micro est ouvert" : "Le mix est arrêté";
}

} // namespace velmora
