// Program.h: the mixer's program, as it runs in a soak.
#pragma once

#include "soak/Rest.h"
#include "soak/World.h"
#include "support/ChildProcess.h"
#include "support/PrivateSession.h"
#include "support/TemporaryFolder.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velmora::soak {

/// The program without a display, with settings of its own.
///
/// Threads: main.
class Program {
public:
    explicit Program(const support::PrivateSession& session);

    void launch();
    [[nodiscard]] support::ChildProcess& process() { return *process_; }
    /// Everything that it ever printed.
    [[nodiscard]] std::string printed() const;
    [[nodiscard]] Rest figures() const;

    /// What of the world is kept wrongly, now that the program has ended.
    [[nodiscard]] std::vector<std::string> compareSettings(const World& world) const;

private:
    [[nodiscard]] std::filesystem::path settingsFile() const;

    support::TemporaryFolder home_{"velmora-soak"};
    support::Environment environment_;
    pid_t group_;
    std::optional<support::ChildProcess> process_;
};

} // namespace velmora::soak
