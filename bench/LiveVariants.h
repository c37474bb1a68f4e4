// LiveVariants.h: the programs whose live cost is compared, each with so many sources.
#pragma once

#include "support/ChildProcess.h"
#include "support/PrivateSession.h"

#include <filesystem>
#include <string>
#include <vector>

namespace velmora::bench {

/// One application that plays, and its stream's node.name.
struct PlayingApp {
    std::string node;
    pid_t pid{};
};

/// A process that takes the sound of the applications, with the file that it writes its answers to.
struct Running {
    support::ChildProcess process;
    std::filesystem::path answers;

    /// Sends a line and returns what was answered.
    [[nodiscard]] std::string ask() const;
};

/// Joins two ports, each "<node.name>:<port.name>", once both are there.
void joinPorts(const support::PrivateSession& session,
               const std::string& from,
               const std::string& to);

/// The mixer with every effect on, into the virtual microphone alone.
[[nodiscard]] Running startMixer(const support::PrivateSession& session,
                                 const std::vector<PlayingApp>& apps);

/// The same with its monitoring output, as users have it.
[[nodiscard]] Running startMonitoringMixer(const support::PrivateSession& session,
                                           const std::vector<PlayingApp>& apps);

/// As many nodes that do nothing.
[[nodiscard]] Running startEmptyNodes(const support::PrivateSession& session,
                                      const std::vector<PlayingApp>& apps);

/// The sound server's own filter chain, one per application: LADSPA gate, compressor, leveller and
/// freeverb, into the virtual microphone.
[[nodiscard]] Running startFilterChains(const support::PrivateSession& session,
                                        const std::vector<PlayingApp>& apps);

/// The same with three plain filters of its own: high-pass, low shelf, high shelf.
[[nodiscard]] Running startPlainChains(const support::PrivateSession& session,
                                       const std::vector<PlayingApp>& apps);

/// Plugin files that `startFilterChains` needs and that are not installed.
[[nodiscard]] std::vector<std::string> missingPlugins();

} // namespace velmora::bench
