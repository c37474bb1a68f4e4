#include "soak/World.h"

#include <algorithm>
#include <unistd.h>

namespace velmora::soak {

namespace {

/// Of this soak: the mixer sees every program of the machine, also those of another one.
std::string program() {
    return "soak-" + std::to_string(::getpid()) + "-player-";
}

} // namespace

void Level::mute(bool on) {
    if (on && !isMuted) {
        dbBeforeMute = db;
    } else if (!on && isMuted) {
        db = dbBeforeMute;
    }
    isMuted = on;
}

void Level::take(const Level& kept) {
    db = kept.db;
    isMuted = kept.isMuted;
}

std::string Player::application() const {
    return program() + std::to_string(number);
}

std::string Player::word() const {
    return "app-" + application() + "-" + std::to_string(pid);
}

std::string Player::applicationOf(std::string_view word) {
    constexpr std::string_view before = "app-";
    if (!word.starts_with(before)) {
        return std::string(word);
    }
    word.remove_prefix(before.size());
    return std::string(word.substr(0, word.rfind('-')));
}

World::World(int count) {
    for (int number = 1; number <= count; ++number) {
        players.push_back({.number = number, .streams = {}});
    }
    players.back().isBystander = true;
}

bool World::isInMix(std::string_view word) const {
    return std::ranges::find(sources, word) != sources.end();
}

const Player* World::playerOf(std::string_view word) const {
    const auto found = std::ranges::find_if(
        players, [&](const Player& one) { return one.pid != 0 && one.word() == word; });
    return found == players.end() ? nullptr : &*found;
}

bool World::works(std::string_view word) const {
    if (word == guitar) {
        return hasGuitar;
    }
    const Player* const player = playerOf(word);
    return player != nullptr && player->isPlaying();
}

bool World::hasWorkingSource() const {
    return std::ranges::any_of(sources, [this](const auto& word) { return works(word); });
}

Strip World::strip(std::string_view word) const {
    const auto found = strips.find(word);
    return found == strips.end() ? Strip{} : found->second;
}

const Setup* World::preset(std::string_view name) const {
    const auto found = std::ranges::find(presets, name, &Setup::name);
    return found == presets.end() ? nullptr : &*found;
}

} // namespace velmora::soak
