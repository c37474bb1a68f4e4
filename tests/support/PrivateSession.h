// PrivateSession.h: a complete audio session of one's own, without touching the user's.
#pragma once

#include "support/AudioGraph.h"
#include "support/ChildProcess.h"
#include "support/TemporaryFolder.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::support {

/// A device of a private session: a silent one of the sound server's own, which plays what is sent
/// to it into its monitor (an output) or into its capture side (the other classes).
struct SessionDevice {
    std::string name{};        ///< node.name, the device's UID
    std::string description{}; ///< the name that users see
    std::string mediaClass{};  ///< "Audio/Sink", "Audio/Duplex" or "Audio/Source/Virtual"
    std::vector<std::string> positions = {"FL", "FR"};
    int priority = 0; ///< the session manager makes the highest one the default
    /// In a session with `patientClock`: the device has such a clock of its own, which is this much
    /// fast. Only for devices that are there from the server's start.
    std::optional<int> ownClockPpm{};
};

/// D-Bus, PipeWire, WirePlumber, pipewire-pulse and the virtual microphone from packaging/, in a
/// fresh folder of their own with nothing of the user's settings. Needs no systemd, display or
/// sound card, and works for root and for ordinary users. Everything that was started in it ends
/// with it, and its folder goes, also when this process crashes.
///
/// Threads: the one that made it, which must be one that lasts (see ChildProcess).
class PrivateSession {
public:
    struct Setup {
        std::vector<SessionDevice>
            devices{}; ///< there from the server's start, also after restarts
        bool virtualMicrophone = true;
        /// The devices share a clock that waits for everyone who is late with a block, so that
        /// what is heard does not depend on how busy the machine is. Otherwise the first device's
        /// timer is the clock, as a sound card's would be.
        bool patientClock = false;
    };

    /// Returns when every device is there and, given an output, the session manager chose one.
    /// Errors: throws std::runtime_error with the end of the logs.
    explicit PrivateSession(Setup setup);
    ~PrivateSession();
    PrivateSession(const PrivateSession&) = delete;
    PrivateSession& operator=(const PrivateSession&) = delete;

    /// Makes this process, and what it starts from now on, part of the session. Call it while no
    /// other thread reads the environment.
    void enter() const;

    [[nodiscard]] const Environment& environment() const { return environment_; }
    /// For anything that should go with the session.
    [[nodiscard]] const std::filesystem::path& folder() const { return folder_.path(); }
    /// Desktop entries placed here are installed applications of the session.
    [[nodiscard]] std::filesystem::path applicationsFolder() const;
    /// Whoever joins this process group ends with the session, with all its children.
    [[nodiscard]] pid_t processGroup() const { return janitor_.pid(); }
    [[nodiscard]] AudioGraph graph() const { return AudioGraph::read(environment_); }

    /// Starts a client of the session; its messages go to the log `logName`.
    [[nodiscard]] ChildProcess start(std::vector<std::string> arguments,
                                     std::string_view logName,
                                     bool takesLines = false) const;

    // -- devices that come and go --
    void add(const SessionDevice& device) const; ///< returns when it is there
    void remove(std::string_view deviceName) const;
    void setDefaultSink(std::string_view deviceName) const; ///< returns when it is the default

    /// Every block of the graph has this many frames; 0 = what the programs ask for.
    void forceQuantum(std::uint32_t frames) const;

    // -- accidents --
    void killDaemon();    ///< SIGKILL; the other services lose it
    void startServices(); ///< (re)starts what does not run; returns when all is there
    void killManager();   ///< SIGKILL to the session manager
    /// As `killManager`; the devices go with it, as sound cards do, until `startServices`.
    void killManagerWithDevices();
    void killPulse();

    /// The last lines of every log, for a failed test.
    [[nodiscard]] std::string logTails() const;

private:
    [[nodiscard]] bool isComplete() const;
    /// Errors: throws std::runtime_error with the end of the logs when it did not happen.
    void demand(bool happened, std::string_view what) const;

    TemporaryFolder folder_{"velmora-session"};
    Environment environment_;
    Setup setup_;
    ChildProcess janitor_;
    std::map<std::string, ChildProcess, std::less<>> services_;
    bool areDevicesAway_ = false; ///< until a session manager brings them back
};

} // namespace velmora::support
