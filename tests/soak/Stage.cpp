#include "soak/Stage.h"

#include "soak/Devices.h"
#include "soak/Hearing.h"
#include "support/Wait.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace velmora::soak {

namespace {

using namespace support;
using Kind = Action::Kind;
namespace fs = std::filesystem;

/// Where the monitoring device takes the second copy.
constexpr int monitorChannel = 3;

} // namespace

std::string streamName(int player, int stream) {
    return "tone-" + std::to_string(player) + "-" + std::to_string(stream);
}

Stage::Stage(int players, bool isPatient)
    : session_({.devices = {speakers, interface4}, .patientClock = isPatient}) {
    session_.enter();
    for (int player = 1; player <= players; ++player) {
        install(player);
    }
    plug(guitar);
}

std::string Stage::programOf(int player) const {
    return session_.folder() / Player{.number = player, .streams = {}}.application();
}

void Stage::install(int player) {
    const std::string name = Player{.number = player, .streams = {}}.application();
    fs::copy_file(clientProgram("velmora_tone_app"), programOf(player));
    std::ofstream(session_.applicationsFolder() / (name + ".desktop"))
        << "[Desktop Entry]\nType=Application\nName=Player " << player
        << "\nExec=" << programOf(player) << '\n';
}

void Stage::perform(Action& action, const World& world) {
    switch (action.kind) {
    case Kind::open:
        return open(action);
    case Kind::close:
        ::kill(players_.at(action.number).pid(), SIGKILL);
        players_.erase(action.number);
        return;
    case Kind::play:
        return play(action.number, action.stream);
    case Kind::hush:
        return players_.at(action.number).stop(streamName(action.number, action.stream));
    case Kind::reconnect:
        return players_.at(action.number).reconnect();
    case Kind::move:
        return move(action);
    case Kind::blocks:
        return session_.forceQuantum(static_cast<std::uint32_t>(action.number));
    case Kind::plug:
        return plug(action.word);
    case Kind::unplug:
        return unplug(action.word);
    case Kind::killDaemon:
        return session_.killDaemon();
    case Kind::killManager:
        // As a manager of sound cards: what it has made goes with it.
        session_.killManagerWithDevices();
        session_.remove(headset.name);
        return box_->stop(guitar);
    case Kind::restartPulse:
        session_.killPulse();
        return session_.startServices();
    case Kind::restore:
        return restore(world);
    default:
        throw std::logic_error("no action on the session: " + describe(action));
    }
}

void Stage::open(Action& action) {
    players_.erase(action.number);
    const auto opened =
        players_.emplace(std::piecewise_construct,
                         std::forward_as_tuple(action.number),
                         std::forward_as_tuple(session_, ToneApp::Look{programOf(action.number)}));
    action.pid = opened.first->second.pid();
}

void Stage::play(int player, int stream) const {
    const double hz = toneOf(player, stream);
    players_.at(player).play(streamName(player, stream), hz, hz, playedDb);
}

void Stage::move(const Action& action) const {
    const AudioGraph graph = session_.graph();
    const GraphNode* const to = graph.node(action.word);
    for (const GraphNode& node : graph.nodes()) {
        if (to != nullptr && node.name.starts_with(streamName(action.number, 0).substr(0, 7))) {
            runToEnd({"pw-metadata",
                      std::to_string(node.id),
                      "target.object",
                      std::to_string(to->serial),
                      "Spa:Id"},
                     session_.environment());
        }
    }
}

void Stage::plug(const std::string& device) {
    if (device != guitar) {
        session_.add(device == headset.name ? headset : interface4);
        return;
    }
    if (!box_) {
        box_.emplace(session_);
    }
    box_->sing(guitar, guitarTone(), guitarTone(), playedDb);
}

void Stage::unplug(const std::string& device) {
    if (device == guitar) {
        box_->stop(guitar);
    } else {
        session_.remove(device);
    }
}

void Stage::restore(const World& world) {
    // A stream that plays through a manager's restart is linked again in three of four cases, with
    // or without a mixer (WirePlumber 0.4.13): each begins anew, as the programs of users do.
    recorders_.clear();
    for (const auto& [number, app] : players_) {
        app.reconnect();
    }
    box_->reconnect();
    session_.startServices();
    for (const auto& [number, app] : players_) {
        app.reconnect(); // there may have been no daemon
    }
    box_->reconnect();
    for (const Player& player : world.players) {
        for (const int stream : player.streams) {
            play(player.number, stream);
        }
    }
    if (world.hasGuitar) {
        plug(guitar);
    }
}

void Stage::startRecorders() {
    recorders_.clear();
    for (const auto& file : fs::directory_iterator(session_.folder())) {
        if (file.path().filename().string().starts_with("sound-")) {
            fs::remove(file.path());
        }
    }
    const auto listen = [this](const std::string& name, int channel) {
        recorders_.emplace(std::piecewise_construct,
                           std::forward_as_tuple(name),
                           std::forward_as_tuple(session_, name, std::vector{channel}));
    };
    listen(microphone, 1);
    listen(speakers.name, 1);
    listen(headset.name, 1);
    listen(interface4.name, monitorChannel);
}

} // namespace velmora::soak
