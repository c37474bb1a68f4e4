#include "soak/Judge.h"

#include "operations/EffectWords.h"
#include "soak/Devices.h"
#include "support/ToneAnalysis.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <span>
#include <sstream>
#include <tuple>

namespace velmora::soak {

namespace {

using nlohmann::json;
using namespace support;

constexpr double toleranceDb = 1;
constexpr std::uint32_t rateHz = 48000;
/// An intruder is heard for this long; what is shorter than a third of it stays below `intruderDb`.
constexpr std::size_t momentFrames = rateHz / 10;
constexpr double intruderDb = playedDb - 10;
const std::string dawDevice = "app.velmora.daw.aggregate";
/// Both channels of a stereo link.
constexpr int mostLinks = 2;

std::string text(double db) {
    std::ostringstream out;
    out << std::round(db * 10) / 10 << " dB";
    return out.str();
}

template <typename T>
void expect(Findings& findings, const std::string& what, const T& expected, const T& found) {
    if (expected != found) {
        findings.push_back(what + " is " + json(found).dump() + ", not " + json(expected).dump());
    }
}

void expectLevel(Findings& findings, const std::string& what, const Level& level, const json& at) {
    constexpr double roundingDb = 0.06;
    expect(findings, what + " muted", level.isMuted, at.value("muted", false));
    const json db = at.value("db", json());
    if (!level.isMuted && !(db.is_number() && std::abs(db.get<double>() - level.db) < roundingDb)) {
        findings.push_back(what + " is at " + db.dump() + " dB, not " + text(level.db));
    }
}

void expectSource(Findings& findings, const World& world, const std::string& word, const json& at) {
    const Strip strip = world.strip(word);
    expectLevel(findings, word, strip.level, at);
    expect(findings, word + " silenced", strip.isSilenced, at.value("silenced", false));
    const json effects = at.value("effects", json::object());
    for (const auto& [name, value] : effectValues(strip.fx)) {
        expect(findings, word + "'s " + name, value, effects.value(name, std::string()));
    }
}

bool isOurs(const std::string& name) {
    return name.starts_with("velmora.") && name != microphone;
}

/// The devices that are there, of those at which an ear listens.
std::vector<std::string> devicesOf(Ear ear, const World& world) {
    switch (ear) {
    case Ear::microphone:
        return {microphone};
    case Ear::phones:
        return world.hasInterface ? std::vector{interface4.name} : std::vector<std::string>{};
    case Ear::outputs:
        break;
    }
    return world.hasHeadset ? std::vector{speakers.name, headset.name} : std::vector{speakers.name};
}

double heardDb(Ear ear, double hz, const World& world, const Stage& stage) {
    double loudest = toDb(0);
    for (const std::string& device : devicesOf(ear, world)) {
        loudest = std::max(loudest, stage.at(device).toneDb(0, hz));
    }
    return loudest;
}

bool isRight(const Expected& expected, double db) {
    return !expected.isSure ||
           (expected.db ? std::abs(db - *expected.db) < toleranceDb : db < silentDb);
}

struct Moment {
    double db = toDb(0);
    double seconds = 0; ///< since the recording began
};

Moment loudestMoment(const std::vector<float>& samples, double hz) {
    Moment loudest;
    for (std::size_t at = 0; at + momentFrames <= samples.size(); at += momentFrames / 2) {
        const auto moment = std::span(samples).subspan(at, momentFrames);
        if (std::ranges::any_of(moment, [](float one) { return std::abs(one) > 1e-4F; })) {
            const Moment here{.db = toneDb(moment, hz),
                              .seconds = static_cast<double>(at) / rateHz};
            loudest = here.db > loudest.db ? here : loudest;
        }
    }
    return loudest;
}

} // namespace

Findings compareStatus(const World& world, const json& status) {
    Findings findings;
    if (!status.is_object()) {
        return {"the mixer did not say what is so"};
    }
    if (world.isRunning) {
        expect(findings, "running", *world.isRunning, status.value("running", false));
    }
    expect(findings, "bypassed", world.isBypassed, status.value("bypassed", false));
    expectLevel(
        findings, "the microphone", world.microphone, status.value("microphone", json::object()));
    expectLevel(
        findings, "the headphones", world.headphones, status.value("headphones", json::object()));
    const json preset = status.value("preset", json());
    expect(findings,
           "the preset",
           world.activePreset,
           preset.is_string() ? preset.get<std::string>() : std::string());
    std::vector<std::string> listed;
    for (const json& source : status.value("sources", json::array())) {
        const bool isApplication = source.value("kind", "") == "application";
        listed.push_back(source.value(isApplication ? "id" : "name", ""));
        expectSource(findings, world, listed.back(), source);
    }
    expect(findings, "the list of sources", world.sources, listed);
    return findings;
}

Findings compareGraph(const World& world, const AudioGraph& graph) {
    Findings findings;
    std::set<std::string> ofTheMix;
    for (const std::string& word : world.sources) {
        if (const Player* const player = world.playerOf(word)) {
            for (const int stream : player->streams) {
                ofTheMix.insert(streamName(player->number, stream));
            }
        }
    }
    const auto count = [&](const std::string& beginning) {
        return std::ranges::count_if(
            graph.nodes(), [&](const GraphNode& node) { return node.name.starts_with(beginning); });
    };
    const auto silenced = std::ranges::count_if(world.sources, [&](const std::string& word) {
        return word != guitar && world.strip(word).isSilenced; // also while it is closed
    });
    const bool isOn = world.isRunning != false;
    const auto atMost = [&](const std::string& what, std::ptrdiff_t most) {
        if (count(what) > most) {
            findings.push_back(std::to_string(count(what)) + " nodes " + what + "*, not " +
                               std::to_string(most));
        }
    };
    atMost("velmora.mix.", isOn ? 1 : 0);
    atMost("velmora.mute.", isOn ? silenced : 0);
    atMost("velmora.route.", 0);
    if (count(dawDevice) != (world.hasDawDevice ? 1 : 0)) {
        findings.push_back(std::to_string(count(dawDevice)) + " DAW devices");
    }
    std::map<std::pair<std::string, std::string>, int> links;
    for (const GraphLink& link : graph.links()) {
        if (isOurs(link.from) || isOurs(link.to)) {
            ++links[{link.from, link.to}];
        }
    }
    for (const auto& [ends, number] : links) {
        const auto& [from, to] = ends;
        const std::string link = "from " + from + " to " + to;
        if (number > mostLinks) {
            findings.push_back(std::to_string(number) + " links " + link);
        }
        if (from.starts_with("tone-") && to.starts_with("velmora.mix.") &&
            !ofTheMix.contains(from)) {
            findings.push_back("a link " + link + ", which is not in the mix");
        }
    }
    return findings;
}

Findings compareSound(const World& world, const Stage& stage) {
    Findings findings;
    for (const Ear ear : {Ear::microphone, Ear::phones, Ear::outputs}) {
        for (const std::string& device : devicesOf(ear, world)) {
            if (!stage.at(device).waitForFreshSound()) {
                findings.push_back("no sound comes from " + device + " at all");
            }
        }
    }
    for (const Expected& one : expectedIn(world)) {
        const double db = heardDb(one.ear, one.hz, world, stage);
        if (!isRight(one, db)) {
            std::ostringstream line;
            line << one.hz << " Hz at " << nameOf(one.ear) << " is " << text(db) << ", not "
                 << (one.db ? text(*one.db) : "silent");
            findings.push_back(line.str());
        }
    }
    return findings;
}

void Allowed::add(const World& world) {
    for (const Expected& one : expectedIn(world)) {
        if (one.db || !one.isSure) {
            tones_.emplace(one.ear, one.hz);
        }
    }
}

void Allowed::addDirect(const World& world) {
    for (const Expected& one : expectedIn(world)) {
        if (one.ear == Ear::outputs) {
            tones_.emplace(one.ear, one.hz);
        }
    }
}

Findings Allowed::intruders(const World& world, const Stage& stage) const {
    Findings findings;
    std::map<std::string, std::vector<float>> recorded;
    for (const Expected& one : expectedIn(world)) {
        if (tones_.contains({one.ear, one.hz})) {
            continue;
        }
        for (const std::string& device : devicesOf(one.ear, world)) {
            if (!recorded.contains(device)) {
                recorded[device] = stage.at(device).all().channel(0);
            }
            const Moment loudest = loudestMoment(recorded[device], one.hz);
            if (loudest.db > intruderDb) {
                std::ostringstream line;
                line << one.hz << " Hz was heard at " << device << " for a moment, by "
                     << text(loudest.db) << ", " << loudest.seconds
                     << " s after it was listened to";
                findings.push_back(line.str());
            }
        }
    }
    return findings;
}

} // namespace velmora::soak
