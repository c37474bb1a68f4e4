#include "support/PrivateSession.h"

#include "support/SessionDevices.h"
#include "support/SessionFiles.h"
#include "support/Wait.h"

#include <algorithm>
#include <cstdlib>
#include <deque>
#include <fstream>
#include <stdexcept>
#include <utility>

namespace velmora::support {
namespace {

namespace fs = std::filesystem;

Environment sessionEnvironment(const fs::path& folder, bool patientClock) {
    Environment environment = currentEnvironment();
    for (const char* foreign : {"DISPLAY",
                                "WAYLAND_DISPLAY",
                                "PIPEWIRE_REMOTE",
                                "PIPEWIRE_RUNTIME_DIR",
                                "PIPEWIRE_CONFIG_DIR",
                                "PULSE_COOKIE",
                                "PULSE_RUNTIME_PATH",
                                "PULSE_SINK",
                                "PULSE_SOURCE"}) {
        environment.erase(foreign);
    }
    environment["XDG_RUNTIME_DIR"] = folder / "run";
    environment["HOME"] = folder / "home";
    environment["XDG_CONFIG_HOME"] = folder / "config";
    environment["XDG_STATE_HOME"] = folder / "state";
    environment["XDG_DATA_HOME"] = folder / "data";
    environment["XDG_CACHE_HOME"] = folder / "cache";
    environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=" + (folder / "run/bus").string();
    environment["PULSE_SERVER"] = "unix:" + (folder / "run/pulse/native").string();
    if (patientClock) {
        environment["SPA_PLUGIN_DIR"] = VELMORA_PLUGIN_FOLDERS;
    }
    return environment;
}

/// Outlives this process in every case: when the pipe to it closes, because this process ended or
/// crashed, it removes the folder and kills the process group that it leads.
Command janitorCommand(const fs::path& folder) {
    return {.arguments = {"sh",
                          "-c",
                          "trap '' HUP INT TERM; cat >/dev/null; rm -rf -- \"$1\"; kill -KILL 0",
                          "sh",
                          folder.string()},
            .output = "/dev/null",
            .processGroup = 0,
            .takesLines = true,
            .outlivesStarter = true};
}

std::string lastLines(const fs::path& file) {
    constexpr std::size_t shown = 25;
    std::deque<std::string> lines;
    std::ifstream in(file);
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
        if (lines.size() > shown) {
            lines.pop_front();
        }
    }
    std::string text;
    for (const auto& line : lines) {
        text += "    " + line + "\n";
    }
    return text;
}

} // namespace

PrivateSession::PrivateSession(Setup setup)
    : environment_(sessionEnvironment(folder_.path(), setup.patientClock)),
      setup_(std::move(setup)), janitor_(janitorCommand(folder_.path())) {
    writeSessionFiles(folder_.path(), setup_);
    startServices();
}

PrivateSession::~PrivateSession() {
    // Clients of the server first, so that none reports a lost connection.
    for (const char* name : {"pipewire-pulse", "wireplumber", "pipewire", "dbus-daemon"}) {
        if (const auto service = services_.find(name); service != services_.end()) {
            service->second.end();
        }
    }
    janitor_.closeInput();
    static_cast<void>(janitor_.wait(patience));
}

// NOLINTBEGIN(concurrency-mt-unsafe): called before the caller starts threads that read it.
void PrivateSession::enter() const {
    const Environment before = currentEnvironment();
    for (const auto& [name, value] : before) {
        if (!environment_.contains(name)) {
            unsetenv(name.c_str());
        }
    }
    for (const auto& [name, value] : environment_) {
        setenv(name.c_str(), value.c_str(), /*overwrite=*/1);
    }
}
// NOLINTEND(concurrency-mt-unsafe)

fs::path PrivateSession::applicationsFolder() const {
    return folder() / "data/applications";
}

ChildProcess PrivateSession::start(std::vector<std::string> arguments,
                                   std::string_view logName,
                                   bool takesLines) const {
    return ChildProcess({.arguments = std::move(arguments),
                         .environment = environment_,
                         .output = folder() / "log" / logName,
                         .processGroup = processGroup(),
                         .takesLines = takesLines});
}

void PrivateSession::startServices() {
    const fs::path run = folder() / "run";
    const std::vector<std::vector<std::string>> commands = {
        {"dbus-daemon",
         "--nofork",
         "--nopidfile",
         "--config-file=" + (folder() / "bus.conf").string()},
        {"pipewire"},
        {"wireplumber"},
        {"pipewire-pulse"},
    };
    const std::vector<fs::path> sockets = {
        run / "bus", run / "pipewire-0", {}, run / "pulse/native"};
    for (std::size_t i = 0; i < commands.size(); ++i) {
        const std::string& name = commands[i].front();
        const auto running = services_.find(name);
        if (running != services_.end() && running->second.isRunning()) {
            continue;
        }
        if (!sockets[i].empty()) {
            fs::remove(sockets[i]); // one left by a killed service would look like the new one
        }
        services_.insert_or_assign(name, start(commands[i], name));
        demand(waitUntil([&] { return sockets[i].empty() || fs::exists(sockets[i]); }), name);
    }
    if (std::exchange(areDevicesAway_, false)) {
        std::ranges::for_each(setup_.devices, [this](const auto& device) { add(device); });
    }
    demand(waitUntil([this] { return isComplete(); }), "the session's devices");
}

bool PrivateSession::isComplete() const {
    const AudioGraph now = graph();
    const auto present = [&](std::string_view name) {
        const GraphNode* node = now.node(name);
        return node != nullptr && node->inputPorts + node->outputPorts > 0;
    };
    const bool hasOutput = std::ranges::any_of(
        setup_.devices, [](const auto& device) { return device.mediaClass == "Audio/Sink"; });
    return std::ranges::all_of(setup_.devices, present, &SessionDevice::name) &&
           (!setup_.virtualMicrophone || present(microphone)) &&
           (!hasOutput || now.defaultSink().has_value());
}

void PrivateSession::add(const SessionDevice& device) const {
    runToEnd({"pw-cli", "create-node", "adapter", adapterArguments(device)}, environment_);
    const auto present = [&] {
        const AudioGraph now = graph();
        const GraphNode* node = now.node(device.name);
        return node != nullptr && node->inputPorts > 0;
    };
    demand(waitUntil(present), device.name);
}

void PrivateSession::remove(std::string_view deviceName) const {
    const AudioGraph now = graph();
    if (const GraphNode* node = now.node(deviceName)) {
        runToEnd({"pw-cli", "destroy", std::to_string(node->id)}, environment_);
    }
    demand(waitUntil([&] { return graph().node(deviceName) == nullptr; }),
           "the end of " + std::string(deviceName));
}

void PrivateSession::setDefaultSink(std::string_view deviceName) const {
    runToEnd({"pw-metadata",
              "0",
              "default.configured.audio.sink",
              R"({"name":")" + std::string(deviceName) + R"("})",
              "Spa:String:JSON"},
             environment_);
    demand(waitUntil([&] { return graph().defaultSink() == std::string(deviceName); }),
           "the new default output");
}

void PrivateSession::forceQuantum(std::uint32_t frames) const {
    runToEnd({"pw-metadata", "-n", "settings", "0", "clock.force-quantum", std::to_string(frames)},
             environment_);
}

void PrivateSession::killDaemon() {
    services_.at("pipewire").kill();
    // The others leave by themselves when they lose it; what stays until the next start would
    // answer for the old daemon.
    for (const char* name : {"wireplumber", "pipewire-pulse"}) {
        services_.at(name).end();
    }
    areDevicesAway_ = false; // the next one has them from its start
}

void PrivateSession::killManager() {
    services_.at("wireplumber").kill();
}

void PrivateSession::killManagerWithDevices() {
    killManager();
    std::ranges::for_each(setup_.devices, [this](const auto& device) { remove(device.name); });
    areDevicesAway_ = true;
}

void PrivateSession::killPulse() {
    services_.at("pipewire-pulse").kill();
}

std::string PrivateSession::logTails() const {
    std::string text;
    for (const auto& file : fs::directory_iterator(folder() / "log")) {
        if (const std::string lines = lastLines(file.path()); !lines.empty()) {
            text += "  " + file.path().filename().string() + ":\n" + lines;
        }
    }
    return text;
}

void PrivateSession::demand(bool happened, std::string_view what) const {
    if (!happened) {
        throw std::runtime_error("waited in vain for " + std::string(what) + " in " +
                                 folder().string() + "\n" + logTails());
    }
}

} // namespace velmora::support
