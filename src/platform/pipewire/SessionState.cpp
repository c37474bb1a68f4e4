#include "platform/pipewire/SessionState.h"

#include "platform/pipewire/view/Muting.h"

#include <chrono>
#include <utility>

#include <unistd.h>

namespace velmora::pipewire {

std::optional<Device> SessionState::device(AudioObjectID id) {
    for (Device& device : listDevices(graph)) {
        if (ids.ofDevice(device.uid) == id) {
            return std::move(device);
        }
    }
    return std::nullopt;
}

std::optional<std::string> SessionState::defaultOutputUID() const {
    return defaultOutput(graph).transform([](const Device& device) { return device.uid; });
}

ApplicationSound SessionState::sound(AudioObjectID process) const {
    const auto& streams = processes.streams(process);
    return {.canBeMuted = knowsSessionManager(graph, streams),
            .isStillHeard = unsilenced.contains(process),
            .isUndecoded = isAnyUndecoded(graph, streams)};
}

std::string SessionState::newNodeName(std::string_view kind) {
    using namespace std::chrono_literals;
    // Process numbers come back; the start time tells two runs with the same one apart.
    static const auto run = std::chrono::system_clock::now().time_since_epoch() / 1s;
    return "velmora." + std::string(kind) + "." + std::to_string(getpid()) + "." +
           std::to_string(run) + "." + std::to_string(++namesGiven_);
}

} // namespace velmora::pipewire
