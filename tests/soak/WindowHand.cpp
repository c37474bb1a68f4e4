#include "soak/WindowHand.h"

#include "settings/Texts.h"
#include "support/Wait.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace velmora::soak {

namespace {

using Kind = Action::Kind;

const QString controlWindow = QStringLiteral("Velmora");
const QString dawSwitch = QStringLiteral("Mode DAW");
const QString audioTab = QStringLiteral("Audio");

constexpr std::string_view settingsWindow = "Réglages Velmora";

/// What the windows call it in their language.
QString shown(std::string_view french, const World& world) {
    const std::string text(world.language == "fr" ? french : inEnglish(french));
    return QString::fromStdString(text);
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
    switch (action.kind) {
    case Kind::start:
    case Kind::stop:
        return press(controlWindow, shown("En marche", world));
    case Kind::muteVolume:
        return press(controlWindow,
                     of(shown("Couper le son", world),
                        action.word == "microphone" ? shown("Micro virtuel", world)
                                                    : shown("Casque", world)));
    case Kind::mute:
        return press(controlWindow, of(shown("Couper le son", world), shownName(action.word)));
    case Kind::remove:
        return press(controlWindow, of(shown("Retirer", world), shownName(action.word)));
    case Kind::language:
        return chooseLanguage(action, world);
    case Kind::daw:
        return openSettings(world, audioTab) && press(shown(settingsWindow, world), dawSwitch);
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
    return press(controlWindow, shown("Réglages…", world)) &&
           press(shown(settingsWindow, world), tab);
}

bool WindowHand::chooseLanguage(const Action& action, const World& world) {
    if (!openSettings(world, shown("Général", world)) ||
        !press(shown(settingsWindow, world), shown("Langue", world))) {
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
