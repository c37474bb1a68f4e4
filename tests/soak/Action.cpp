#include "soak/Action.h"

#include "soak/Devices.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <string_view>

namespace velmora::soak {

namespace {

using Kind = Action::Kind;

/// In the order of `Action::Kind`.
constexpr std::array<std::string_view, 30> names{
    "start",        "stop",          "bypass",      "volume",       "mute volume",   "add",
    "remove",       "gain",          "mute",        "silence",      "effects",       "save preset",
    "apply preset", "remove preset", "ask",         "language",     "DAW device",    "open",
    "close",        "play",          "hush",        "reconnect",    "move",          "blocks",
    "plug",         "unplug",        "kill daemon", "kill manager", "restart pulse", "restore"};

/// A start, or an edit of a mix that is on, builds everything anew: with nothing that works it
/// ends, unless it was waited for before.
void build(World& world) {
    world.isRunning = world.hasWorkingSource() && world.isUp() ? std::optional(true) : std::nullopt;
    world.isMonitorSure = world.hasInterface && world.isUp();
}

void edit(World& world) {
    if (world.isRunning == false) {
        return;
    }
    if (world.sources.empty()) {
        world.isRunning = false;
    } else {
        build(world);
    }
}

Level& volumeOf(World& world, std::string_view word) {
    return word == "microphone" ? world.microphone : world.headphones;
}

/// How a preset keeps it: a device by what can be read of it at that moment.
std::string keyOf(const World& world, const std::string& word) {
    return word == guitar && !world.hasGuitar ? std::string() : Player::applicationOf(word);
}

void save(World& world, const std::string& name) {
    Setup setup{.name = name,
                .entries = {},
                .microphone = world.microphone,
                .headphones = world.headphones};
    for (const std::string& word : world.sources) {
        const Strip strip = world.strip(word);
        setup.entries.push_back({.key = keyOf(world, word), .level = strip.level, .fx = strip.fx});
    }
    const auto namesake = std::ranges::find(world.presets, name, &Setup::name);
    if (namesake == world.presets.end()) {
        world.presets.push_back(setup);
    } else {
        *namesake = setup;
    }
    world.activePreset = name;
}

/// The running instance of an application, or the device; empty = not there.
std::string found(const World& world, const std::string& key) {
    if (key == guitar) {
        return world.hasGuitar ? guitar : std::string();
    }
    const auto player = std::ranges::find_if(
        world.players, [&](const Player& one) { return one.pid != 0 && one.application() == key; });
    return player == world.players.end() ? std::string() : player->word();
}

void recall(World& world, const Setup& setup) {
    world.sources.clear();
    for (const Setup::Entry& entry : setup.entries) {
        const std::string word = found(world, entry.key);
        if (word.empty() || world.isInMix(word)) {
            continue;
        }
        world.sources.push_back(word);
        world.strips[word].level.take(entry.level);
        world.strips[word].fx = entry.fx;
    }
    world.microphone.take(setup.microphone);
    world.headphones.take(setup.headphones);
    world.activePreset = setup.name;
    edit(world);
}

void forgetPreset(World& world, const std::string& name) {
    std::erase_if(world.presets, [&](const Setup& one) { return one.name == name; });
    if (world.activePreset == name) {
        world.activePreset.clear();
    }
}

/// True when the action was one of those that the mixer is asked for.
bool followMixer(World& world, const Action& action) {
    switch (action.kind) {
    case Kind::start:
        if (world.isRunning != true && !world.sources.empty()) {
            build(world);
        }
        return true;
    case Kind::stop:
        world.isRunning = false;
        return true;
    case Kind::bypass:
        world.isBypassed = action.on;
        return true;
    case Kind::volume:
        volumeOf(world, action.word).set(action.db);
        return true;
    case Kind::muteVolume:
        volumeOf(world, action.word).mute(action.on);
        return true;
    case Kind::add:
        world.sources.push_back(action.word);
        edit(world);
        return true;
    case Kind::remove:
        std::erase(world.sources, action.word);
        edit(world);
        return true;
    case Kind::gain:
        world.strips[action.word].level.set(action.db);
        return true;
    case Kind::mute:
        world.strips[action.word].level.mute(action.on);
        return true;
    case Kind::silence:
        world.strips[action.word].isSilenced = action.on;
        return true;
    case Kind::effects:
        world.strips[action.word].fx = action.fx;
        return true;
    case Kind::savePreset:
        save(world, action.word);
        return true;
    case Kind::applyPreset:
        recall(world, Setup(*world.preset(action.word)));
        return true;
    case Kind::removePreset:
        forgetPreset(world, action.word);
        return true;
    case Kind::ask:
        return true;
    case Kind::language:
        world.language = action.word;
        return true;
    case Kind::daw:
        world.hasDawDevice = action.on;
        return true;
    default:
        return false;
    }
}

void setDevice(World& world, const std::string& name, bool isThere) {
    if (name == guitar) {
        world.hasGuitar = isThere;
    } else if (name == headset.name) {
        world.hasHeadset = isThere;
    } else {
        world.hasInterface = isThere;
        world.isMonitorSure = world.isMonitorSure || isThere; // it returns to its device
    }
}

void followSession(World& world, const Action& action) {
    const auto index = static_cast<std::size_t>(std::max(action.number, 1)) - 1;
    Player& player = world.players[std::min(index, world.players.size() - 1)];
    switch (action.kind) {
    case Kind::open:
        player.pid = action.pid;
        return;
    case Kind::close:
        player.pid = 0;
        player.streams.clear();
        return;
    case Kind::play:
        player.streams.insert(action.stream);
        return;
    case Kind::hush:
        player.streams.erase(action.stream);
        return;
    case Kind::reconnect:
        player.streams.clear();
        return;
    case Kind::plug:
    case Kind::unplug:
        setDevice(world, action.word, action.kind == Kind::plug);
        return;
    case Kind::killDaemon:
        world.hasDaemon = false;
        world.hasManager = false;
        world.hasHeadset = false; // it lived in the daemon; the others come back with it
        world.hasInterface = true;
        return;
    case Kind::killManager:
        world.hasManager = false;
        world.hasHeadset = false; // all devices went with it; the others come back with the next
        world.hasInterface = true;
        return;
    case Kind::restore:
        world.hasDaemon = true;
        world.hasManager = true;
        world.isMonitorSure = world.isMonitorSure || world.hasInterface;
        return;
    default:
        return;
    }
}

} // namespace

void follow(World& world, const Action& action) {
    if (!followMixer(world, action)) {
        followSession(world, action);
    }
}

std::string nameOf(Action::Kind kind) {
    return std::string(names.at(static_cast<std::size_t>(kind)));
}

std::string describe(const Action& action) {
    std::ostringstream line;
    line << nameOf(action.kind);
    switch (action.kind) {
    case Kind::open:
    case Kind::close:
    case Kind::reconnect:
        line << " player " << action.number;
        break;
    case Kind::play:
    case Kind::hush:
        line << " player " << action.number << " stream " << action.stream;
        break;
    case Kind::move:
        line << " player " << action.number << " to";
        break;
    case Kind::blocks:
        line << ' ' << action.number;
        break;
    case Kind::volume:
    case Kind::gain:
        line << ' ' << action.db << " dB";
        break;
    case Kind::bypass:
    case Kind::muteVolume:
    case Kind::mute:
    case Kind::silence:
    case Kind::daw:
        line << (action.on ? " on" : " off");
        break;
    case Kind::effects:
        line << ' ' << encodeFXParams(action.fx);
        break;
    default:
        break;
    }
    line << (action.word.empty() ? "" : " ") << action.word;
    return line.str();
}

} // namespace velmora::soak
