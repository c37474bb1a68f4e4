// SessionMemory.h: what a private session's manager keeps of where streams play.
#pragma once

#include "support/PrivateSession.h"
#include "support/Wait.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string>

namespace velmora {

/// Everything that the session manager keeps, by file, and the targets that it was given.
struct SessionMemory {
    std::map<std::string, std::string> files;
    std::set<std::string> metadata;

    bool operator==(const SessionMemory&) const = default;
};

/// A line "key=value" of the session manager's files. Later versions keep JSON, with the members in
/// another order each time. How many channels there are, and which, they (0.5.18) may write when
/// anything else of the device or stream has changed: of the channels' volumes each is told once.
inline std::string inOneOrder(const std::string& line) {
    const std::size_t value = line.find('=') + 1;
    auto json = nlohmann::json::parse(line.substr(value), nullptr, /*throws=*/false);
    if (!json.is_object()) {
        return line;
    }
    json.erase("channelMap");
    if (const auto volumes = json.find("channelVolumes"); volumes != json.end()) {
        *volumes = volumes->get<std::set<double>>();
    }
    return line.substr(0, value) + json.dump();
}

inline SessionMemory memoryOf(const support::PrivateSession& session) {
    // It writes its files a second after a change.
    static_cast<void>(support::waitUntil([] { return false; }, std::chrono::milliseconds(1500)));
    SessionMemory found;
    namespace fs = std::filesystem;
    for (const auto& entry : fs::recursive_directory_iterator(session.folder() / "state")) {
        if (entry.is_regular_file()) {
            std::ifstream in(entry.path());
            std::string& text = found.files[entry.path().string()];
            for (std::string line; std::getline(in, line);) {
                text += inOneOrder(line) + "\n";
            }
        }
    }
    std::istringstream lines(support::runToEnd({"pw-metadata"}, session.environment()));
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("update:")) {
            found.metadata.insert(line);
        }
    }
    return found;
}

/// Once its files are as in `expected`, or else as they are after all the time that writing may
/// take: when the session manager did not hear of a choice, it is told again seconds later.
inline SessionMemory memoryOf(const support::PrivateSession& session,
                              const SessionMemory& expected) {
    SessionMemory found = memoryOf(session);
    for (int times = 0; times < 6 && found.files != expected.files; ++times) {
        found = memoryOf(session);
    }
    return found;
}

/// As the user does it in a mixer of the desktop.
inline void sendTo(const support::PrivateSession& session,
                   const std::string& stream,
                   const std::string& device) {
    const support::AudioGraph graph = session.graph();
    support::runToEnd({"pw-metadata",
                       std::to_string(graph.node(stream)->id),
                       "target.object",
                       std::to_string(graph.node(device)->serial),
                       "Spa:Id"},
                      session.environment());
}

} // namespace velmora
