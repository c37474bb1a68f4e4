#include "soak/Dice.h"

#include "soak/Devices.h"

#include <algorithm>
#include <array>
#include <ranges>
#include <string>
#include <utility>

namespace velmora::soak {

namespace {

using Kind = Action::Kind;

constexpr std::size_t mostPresets = 4;
constexpr std::size_t mostSources = 6;
constexpr std::array<std::string_view, 6> questions{
    "status", "sources", "available", "levels", "monitor", "preset list"};
constexpr std::array<int, 4> blockLengths{0, 64, 256, 1024}; // frames
constexpr std::array<bool Faults::*, 6> everyFault{&Faults::applications,
                                                   &Faults::devices,
                                                   &Faults::blocks,
                                                   &Faults::daemon,
                                                   &Faults::manager,
                                                   &Faults::pulse};
constexpr std::array<std::string_view, 6> faultNames{
    "applications", "devices", "blocks", "daemon", "manager", "pulse"};

/// Recalling it leaves no doubt about what is in the mix.
bool isCertain(const World& world, const Setup& setup) {
    return std::ranges::all_of(setup.entries, [&](const Setup::Entry& entry) {
        if (entry.key == guitar || entry.key.empty()) {
            return true;
        }
        return std::ranges::any_of(world.players, [&](const Player& one) {
            return one.application() == entry.key && one.isPlaying();
        });
    });
}

} // namespace

Faults Faults::all() {
    Faults faults;
    for (const auto fault : everyFault) {
        faults.*fault = true;
    }
    return faults;
}

std::optional<Faults> Faults::named(std::string_view words) {
    if (words == "all") {
        return all();
    }
    Faults faults;
    if (words == "none") {
        return faults;
    }
    for (const auto word : std::views::split(words, ',')) {
        const auto name = std::ranges::find(faultNames, std::string_view(word.begin(), word.end()));
        if (name == faultNames.end()) {
            return std::nullopt;
        }
        faults.*everyFault[static_cast<std::size_t>(name - faultNames.begin())] = true;
    }
    return faults;
}

int Dice::between(int first, int last) {
    return first + static_cast<int>(random_() % static_cast<std::uint64_t>(last - first + 1));
}

void Dice::offer(int weight, Action action) {
    offers_.push_back({weight, std::move(action)});
}

Action Dice::next(const World& world) {
    offers_.clear();
    offerEdits(world);
    offerPresets(world);
    if (world.isUp()) {
        offerPlayers(world);
        offerFaults(world);
    } else {
        offer(40, {.kind = Kind::restore});
    }
    int sum = 0;
    for (const Offer& one : offers_) {
        sum += one.weight;
    }
    int left = between(0, sum - 1);
    const auto drawn =
        std::ranges::find_if(offers_, [&](const Offer& one) { return (left -= one.weight) < 0; });
    return drawn->action;
}

void Dice::offerEdits(const World& world) {
    if (world.isRunning == false) {
        offer(world.sources.empty() ? 0 : 40, {.kind = Kind::start});
    } else {
        offer(4, {.kind = Kind::stop});
    }
    offer(3, {.kind = Kind::bypass, .on = !world.isBypassed});
    for (const std::string word : {"microphone", "headphones"}) {
        const Level& level = word == "microphone" ? world.microphone : world.headphones;
        offer(3, {.kind = Kind::volume, .word = word, .db = -between(0, 18) / 2.0});
        offer(level.isMuted ? 8 : 2,
              {.kind = Kind::muteVolume, .word = word, .on = !level.isMuted});
    }
    offer(8, {.kind = Kind::ask, .word = std::string(questions.at(between(0, 5)))});
    if (hasWindow_) {
        offer(3, {.kind = Kind::language, .word = world.language == "en" ? "fr" : "en"});
        offer(world.isUp() && world.hasInterface ? 3 : 0,
              {.kind = Kind::daw, .on = !world.hasDawDevice});
    }
    for (const std::string& word : world.sources) {
        offerStrip(world, word);
    }
    if (world.isUp() && world.sources.size() < mostSources) {
        for (const Player& player : world.players) {
            if (player.isPlaying() && !player.isBystander && !world.isInMix(player.word())) {
                offer(8, {.kind = Kind::add, .word = player.word()});
            }
        }
        offer(world.hasGuitar && !world.isInMix(guitar) ? 8 : 0,
              {.kind = Kind::add, .word = guitar});
    }
}

void Dice::offerStrip(const World& world, const std::string& word) {
    const Strip strip = world.strip(word);
    const bool isDead = word != guitar && world.playerOf(word) == nullptr;
    offer(isDead ? 12 : 2, {.kind = Kind::remove, .word = word});
    offer(2, {.kind = Kind::gain, .word = word, .db = between(-24, 6) / 2.0});
    offer(strip.level.isMuted ? 6 : 2,
          {.kind = Kind::mute, .word = word, .on = !strip.level.isMuted});
    offer(word == guitar ? 0 : 3, {.kind = Kind::silence, .word = word, .on = !strip.isSilenced});
    offer(3, {.kind = Kind::effects, .word = word, .fx = effects()});
}

FXParams Dice::effects() {
    FXParams fx;
    if (between(0, 3) == 0) {
        return fx;
    }
    fx.autoGain = false;
    fx.manualDB = static_cast<float>(between(-6, 6));
    fx.lowcut = between(0, 2);
    fx.tilt = static_cast<float>(between(-4, 4)) / 10;
    if (between(0, 3) == 0) {
        fx.comp = between(0, 3);
        fx.autoGain = between(0, 1) == 1;
        fx.reverbChar = between(0, 2);
        fx.reverbMix = static_cast<float>(between(0, 10)) / 10;
        fx.plosive = between(0, 1) == 1;
        fx.denoise = between(0, 1) == 1;
    }
    return fx;
}

void Dice::offerPresets(const World& world) {
    // Nobody knows whether the device can be read while the services come or go.
    const bool isCertainToSave = world.isUp() || !world.isInMix(guitar);
    if (isCertainToSave && world.presets.size() < mostPresets) {
        offer(2, {.kind = Kind::savePreset, .word = "Setup " + std::to_string(between(1, 6))});
    }
    for (const Setup& setup : world.presets) {
        offer(world.isUp() && isCertain(world, setup) ? 2 : 0,
              {.kind = Kind::applyPreset, .word = setup.name});
        offer(1, {.kind = Kind::removePreset, .word = setup.name});
    }
}

void Dice::offerPlayers(const World& world) {
    for (const Player& player : world.players) {
        if (player.pid == 0) {
            offer(20, {.kind = Kind::open, .number = player.number});
        } else {
            offerPlayer(world, player);
        }
    }
}

void Dice::offerPlayer(const World& world, const Player& player) {
    for (int stream = 1; stream <= streamsEach; ++stream) {
        const bool plays = player.streams.contains(stream);
        offer(plays ? (faults_.applications ? 1 : 0) : (player.streams.empty() ? 20 : 2),
              {.kind = plays ? Kind::hush : Kind::play, .number = player.number, .stream = stream});
    }
    if (!faults_.applications || player.isBystander) {
        return;
    }
    offer(1, {.kind = Kind::close, .number = player.number});
    offer(1, {.kind = Kind::reconnect, .number = player.number});
    // Who keeps moving a silenced stream is given way to in the end.
    if (world.hasHeadset && player.isPlaying() && !world.strip(player.word()).isSilenced) {
        offer(1, {.kind = Kind::move, .word = headset.name, .number = player.number});
        offer(1, {.kind = Kind::move, .word = support::speakers.name, .number = player.number});
    }
}

void Dice::offerFaults(const World& world) {
    const auto change = [&](const std::string& device, bool isThere) {
        offer(isThere ? 2 : 8, {.kind = isThere ? Kind::unplug : Kind::plug, .word = device});
    };
    if (faults_.devices) {
        change(guitar, world.hasGuitar);
        change(headset.name, world.hasHeadset);
        change(support::interface4.name, world.hasInterface);
    }
    if (faults_.blocks) {
        offer(3, {.kind = Kind::blocks, .number = blockLengths.at(between(0, 3))});
    }
    offer(faults_.daemon ? 2 : 0, {.kind = Kind::killDaemon});
    // A session in which a service is started again must have all its devices.
    if (world.hasInterface) {
        offer(faults_.manager ? 2 : 0, {.kind = Kind::killManager});
        offer(faults_.pulse ? 1 : 0, {.kind = Kind::restartPulse});
    }
}

} // namespace velmora::soak
