#include "soak/Hearing.h"

#include "support/Prediction.h"

#include <algorithm>

namespace velmora::soak {

namespace {

double toneAt(int place) {
    return 500 + 250.0 * place + 13.0 * place * place;
}

/// None of what depends on how loud the sound is, or was.
bool isLinear(const FXParams& fx) {
    return fx.isNeutral() ||
           (!fx.autoGain && fx.comp == 0 && fx.reverbMix == 0 && !fx.plosive && !fx.denoise);
}

/// A source's tone in a mix; none = silent.
std::optional<double> mixedDb(const World& world, const Strip& strip, double hz) {
    if (strip.level.isMuted) {
        return std::nullopt;
    }
    const FXParams fx = world.isBypassed ? FXParams{} : strip.fx;
    if (fx.isNeutral() || !isLinear(fx)) {
        return playedDb + strip.level.db;
    }
    constexpr double seconds = 1;
    return support::predictedDb({.hz = {hz, hz}, .db = playedDb}, strip.level.db, fx, seconds)
        .front();
}

struct Tone {
    double hz{};
    std::string word{};    ///< the source that it belongs to
    bool plays = false;    ///< at all
    bool isDirect = false; ///< also without the mix
};

std::vector<Tone> tones(const World& world) {
    std::vector<Tone> all{{.hz = guitarTone(), .word = guitar, .plays = world.hasGuitar}};
    for (const Player& player : world.players) {
        for (int stream = 1; stream <= streamsEach; ++stream) {
            const bool plays = player.streams.contains(stream);
            all.push_back({.hz = toneOf(player.number, stream),
                           .word = player.pid == 0 ? std::string() : player.word(),
                           .plays = plays,
                           .isDirect = plays});
        }
    }
    return all;
}

} // namespace

std::string nameOf(Ear ear) {
    switch (ear) {
    case Ear::microphone:
        return "the microphone";
    case Ear::phones:
        return "the monitoring device";
    case Ear::outputs:
        break;
    }
    return "the outputs";
}

double toneOf(int player, int stream) {
    return toneAt(streamsEach * (player - 1) + stream);
}

double guitarTone() {
    return toneAt(0);
}

std::vector<Expected> expectedIn(const World& world) {
    std::vector<Expected> all;
    for (const Tone& tone : tones(world)) {
        const Strip strip = world.strip(tone.word);
        const bool isMixed = world.isRunning != false && tone.plays && world.isInMix(tone.word);
        const bool isSure =
            world.isRunning.has_value() && (!isMixed || world.isBypassed || isLinear(strip.fx));
        const auto inMix = isMixed ? mixedDb(world, strip, tone.hz) : std::nullopt;
        const auto copy = [&](Ear ear, const Level& volume) {
            const auto db =
                inMix && !volume.isMuted ? std::optional(*inMix + volume.db) : std::nullopt;
            return Expected{.ear = ear, .hz = tone.hz, .db = db, .isSure = isSure || !db};
        };
        all.push_back(copy(Ear::microphone, world.microphone));
        if (world.hasInterface) {
            all.push_back(copy(Ear::phones, world.headphones));
            all.back().isSure = all.back().isSure && (world.isMonitorSure || !isMixed);
        }
        const bool isSilenced = isMixed && strip.isSilenced;
        all.push_back({.ear = Ear::outputs,
                       .hz = tone.hz,
                       .db = tone.isDirect && !isSilenced ? std::optional(playedDb) : std::nullopt,
                       .isSure = world.isRunning.has_value() && (world.isMonitorSure || !isMixed)});
    }
    return all;
}

} // namespace velmora::soak
