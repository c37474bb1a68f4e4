// PipeWireAudio.h: the machine's sound, through PipeWire.
#pragma once

#include "platform/ApplicationTaps.h"
#include "platform/AudioDevices.h"
#include "platform/AudioUnits.h"
#include "platform/MainQueue.h"
#include "platform/ProgramClaim.h"
#include "platform/PublicSinks.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace velmora {

/// One connection to the PipeWire daemon, seen through the mixer's interfaces.
///
/// Without a daemon every read answers none and every request is refused; the connection is made
/// by itself as soon as a daemon answers, and made again when it was lost. After a loss every tap
/// and every unit is dead: stopping and destroying them stays harmless, and a change of the default
/// output is told once that output is known again.
///
/// Threads: main. Real-time: no.
class PipeWireAudio {
public:
    struct Options {
        // These are called on the main thread.

        /// Which process each program is; when empty, its own word counts.
        std::function<std::vector<ProgramIdentity>(const std::vector<ProgramClaim>& claims)>
            identify;
        /// The leading process of the application that a process belongs to; the process itself
        /// when empty.
        std::function<std::int32_t(std::int32_t pid)> applicationPid;
        /// When a process started, in any unit; 0 = unknown. It tells a process that connects again
        /// from another one that was given its number.
        std::function<std::uint64_t(std::int32_t pid)> processStart;
        /// Asks whoever may raise threads to do so with one of this process's, where the kernel
        /// does not let it: the one that has to be quicker than the session manager. Not asked
        /// when empty.
        std::function<void(std::int32_t thread, int niceLevel)> raiseThread;
        /// Keeps for later runs what is known of cards, so that their devices have the same UIDs
        /// then. Not kept when empty.
        std::function<void(std::string cards)> keepCards;

        /// What `keepCards` was told last, in this run or one before.
        std::string knownCards;
        /// Longest wait of the constructor for the first complete list of devices.
        std::chrono::milliseconds firstListing{2000};
    };

    explicit PipeWireAudio(MainQueue& mainQueue);
    PipeWireAudio(MainQueue& mainQueue, Options options);
    ~PipeWireAudio();
    PipeWireAudio(const PipeWireAudio&) = delete;
    PipeWireAudio& operator=(const PipeWireAudio&) = delete;

    [[nodiscard]] AudioDevices& devices();
    [[nodiscard]] ApplicationTaps& taps();
    [[nodiscard]] PublicSinks& sinks();
    [[nodiscard]] AudioUnits& units();

    /// What the application that `pid` leads calls itself; empty when it does not say, or has
    /// never played.
    [[nodiscard]] std::string applicationName(std::int32_t pid) const;
    /// The installed application that a stand-in is known to be; empty when nobody knows.
    [[nodiscard]] std::string applicationID(std::int32_t pid) const;

    /// Makes sure that a device's name contains "velmora": creates the virtual microphone
    /// "Velmora Microphone" when there is none, waiting shortly until it can be used, and again
    /// after the daemon was restarted. The device stays when this program ends.
    /// Errors: the status; the microphone is made as soon as a daemon answers.
    Status ensureVirtualMicrophone();

private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace velmora
