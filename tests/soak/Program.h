// Program.h: the mixer's program, as it runs in a soak.
#pragma once

#include "soak/Rest.h"
#include "soak/World.h"
#include "support/ChildProcess.h"
#include "support/PrivateSession.h"
#include "support/TemporaryFolder.h"
#include "support/VirtualDisplay.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velmora::soak {

/// The program with settings of its own; on a display of its own, or without one.
///
/// Threads: main.
class Program {
public:
    Program(const support::PrivateSession& session, bool hasWindow);

    void launch();
    [[nodiscard]] const support::Environment& environment() const { return environment_; }
    [[nodiscard]] support::ChildProcess& process() { return *process_; }
    /// Everything that it ever printed.
    [[nodiscard]] std::string printed() const;
    [[nodiscard]] Rest figures() const;

    /// What of the world is kept wrongly, now that the program has ended.
    [[nodiscard]] std::vector<std::string> compareSettings(const World& world) const;

private:
    [[nodiscard]] std::filesystem::path settingsFile() const;

    std::optional<support::VirtualDisplay> display_;
    support::TemporaryFolder home_{"velmora-soak"};
    support::Environment environment_;
    pid_t group_;
    std::optional<support::ChildProcess> process_;
};

} // namespace velmora::soak
