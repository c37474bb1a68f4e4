#include "soak/WindowHand.h"

#include "support/Wait.h"

#include <algorithm>

namespace velmora::soak {

namespace {

using Kind = Action::Kind;

const QString controlWindow = QStringLiteral("Velmora");
const QString dawSwitch = QStringLiteral("Mode DAW");
const QString audioTab = QStringLiteral("Audio");

/// What the windows call things.
struct Words {
    QString running;
    QString mute;
    QString remove;
    QString headphones;
    QString microphone;
    QString settings;
    QString settingsWindow;
    QString generalTab;
    QString language;
};

const Words english{.running = "Running",
                    .mute = "Mute",
                    .remove = "Remove",
                    .headphones = "Headphones",
                    .microphone = "Virtual microphone",
                    .settings = "Settings…",
                    .settingsWindow = "Velmora Settings",
                    .generalTab = "General",
                    .language = "Language"};
const Words french{.running = "En marche",
                   .mute = "Couper le son",
                   .remove = "Retirer",
                   .headphones = "Casque",
                   .microphone = "Micro virtuel",
                   .settings = "Réglages…",
                   .settingsWindow = "Réglages Velmora",
                   .generalTab = "Général",
                   .language = "Langue"};

const Words& wordsOf(const std::string& language) {
    return language == "fr" ? french : english;
}

QString of(const QString& verb, const QString& subject) {
    return verb + " — " + subject;
}

/// As strips call a source.
QString shownName(const std::string& word) {
    if (word == guitar) {
        return QString::fromStdString(word);
    }
    const std::string application = Player::applicationOf(word);
    return "Player " + QString::fromStdString(application.substr(application.rfind('-') + 1));
}

/// Two instances of an application are called the same.
bool isNamedOnce(const std::string& word, const World& world) {
    return std::ranges::count(world.sources, shownName(word), shownName) == 1;
}

} // namespace

bool WindowHand::knows(const Action& action, const World& world) {
    switch (action.kind) {
    case Kind::start:
    case Kind::stop:
        return world.isRunning.has_value();
    case Kind::muteVolume:
    case Kind::language:
    case Kind::daw:
        return true;
    case Kind::mute:
    case Kind::remove:
        return isNamedOnce(action.word, world);
    default:
        return false;
    }
}

bool WindowHand::perform(const Action& action, const World& world) {
    const Words& words = wordsOf(world.language);
    switch (action.kind) {
    case Kind::start:
    case Kind::stop:
        return press(controlWindow, words.running);
    case Kind::muteVolume:
        return press(
            controlWindow,
            of(words.mute, action.word == "microphone" ? words.microphone : words.headphones));
    case Kind::mute:
        return press(controlWindow, of(words.mute, shownName(action.word)));
    case Kind::remove:
        return press(controlWindow, of(words.remove, shownName(action.word)));
    case Kind::language:
        return chooseLanguage(action, world);
    case Kind::daw:
        return openSettings(world, audioTab) && press(words.settingsWindow, dawSwitch);
    default:
        return false;
    }
}

bool WindowHand::press(const QString& window, const QString& name) {
    return support::waitUntil([&] {
        const SpokenObject found = reader_.find(reader_.window(window), name);
        return found.isThere() && reader_.press(found);
    });
}

bool WindowHand::openSettings(const World& world, const QString& tab) {
    const Words& words = wordsOf(world.language);
    return press(controlWindow, words.settings) && press(words.settingsWindow, tab);
}

bool WindowHand::chooseLanguage(const Action& action, const World& world) {
    const Words& words = wordsOf(world.language);
    if (!openSettings(world, words.generalTab) || !press(words.settingsWindow, words.language)) {
        return false;
    }
    const QString choice = action.word == "fr" ? "Français" : "English";
    return support::waitUntil([&] {
        const SpokenObject menu = reader_.menu();
        const SpokenObject entry = reader_.find(menu, choice);
        return entry.isThere() && reader_.press(entry);
    });
}

} // namespace velmora::soak
