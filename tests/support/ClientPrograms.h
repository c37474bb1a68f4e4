// ClientPrograms.h: the programs that tests and demo let play and record in a private session.
#pragma once

#include "support/ChildProcess.h"
#include "support/PrivateSession.h"
#include "support/Recording.h"
#include "support/ToneAnalysis.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::support {

/// The path of one of the client programs built beside this library.
[[nodiscard]] std::string clientProgram(std::string_view name);

/// An application with any number of streams, speaking PipeWire's own protocol.
class ToneApp {
public:
    struct Look {
        std::string program = clientProgram("velmora_tone_app"); ///< or a renamed copy of it
        bool playsFromChildProcess = false;
    };

    explicit ToneApp(const PrivateSession& session);
    ToneApp(const PrivateSession& session, const Look& look);

    void play(std::string_view stream, double leftHz, double rightHz, double db) const;
    /// As `play`, to the default output of this moment: the stream may not be moved.
    void pin(std::string_view stream, double leftHz, double rightHz, double db) const;
    /// Is an input device of that name, until it is told to stop.
    void sing(std::string_view device, double leftHz, double rightHz, double db) const;
    /// Records from an input device, until it is told to stop.
    void hear(std::string_view stream, std::string_view device) const;
    /// As `hear`, as the level meter of a mixer.
    void measure(std::string_view stream, std::string_view device) const;
    void mute(std::string_view stream) const; ///< the stream stays and plays silence
    void stop(std::string_view stream) const;
    void reconnect() const; ///< leaves the sound server with every stream, and joins it again

    [[nodiscard]] pid_t pid() const { return process_.pid(); }
    void end() { process_.end(); }

private:
    void order(std::string_view verb,
               std::string_view stream,
               double leftHz,
               double rightHz,
               double db) const;

    ChildProcess process_;
};

/// `pw-play` with a tone of two minutes.
class NativePlayer {
public:
    NativePlayer(const PrivateSession& session, const Tone& tone);
    [[nodiscard]] pid_t pid() const { return process_.pid(); }

private:
    ChildProcess process_;
};

/// `paplay` with a tone of two minutes, through the Pulse protocol.
class PulsePlayer {
public:
    PulsePlayer(const PrivateSession& session, const Tone& tone);
    [[nodiscard]] pid_t pid() const { return process_.pid(); }

private:
    ChildProcess process_;
};

/// A player in a sandbox with a process namespace of its own (bubblewrap), where every first
/// program has the same number.
class SandboxedPlayer {
public:
    struct Look {
        std::string program = "paplay";
        std::vector<std::string> arguments{}; ///< before the sound's file
        std::string flatpakInfo{};            ///< what lies at its root; empty = nothing
    };

    SandboxedPlayer(const PrivateSession& session, const Tone& tone, const Look& look);

private:
    ChildProcess process_;
};

/// `pw-play` with a sound of the test's own, to a device of its choice.
class TargetedPlayer {
public:
    TargetedPlayer(const PrivateSession& session, const std::string& device, const Sound& sound);

private:
    ChildProcess process_;
};

/// Plays one tone into each of the given channels (1-based) of a device, without end.
class Feeder {
public:
    Feeder(const PrivateSession& session,
           const std::string& device,
           const std::vector<int>& channels,
           const Tone& tone);
    [[nodiscard]] pid_t pid() const { return process_.pid(); }

private:
    ChildProcess process_;
};

/// Records output ports (1-based; of a sink: of its monitor) of a node, or of one node for each
/// channel ("speakers,mic"): then the channels are of the same moment.
class Recorder : public Recording {
public:
    Recorder(const PrivateSession& session,
             const std::string& node,
             const std::vector<int>& channels);

    /// Waits until the clock that it is called by is this much fast.
    [[nodiscard]] bool hasClock(int ppm) const;

private:
    Recorder(const PrivateSession& session,
             const std::string& node,
             const std::vector<int>& channels,
             const std::filesystem::path& file);

    std::filesystem::path clockFile_;
    ChildProcess process_;
};

/// Records a source in stereo as a call program would: `parec`, through the Pulse protocol.
class PulseRecorder : public Recording {
public:
    PulseRecorder(const PrivateSession& session, const std::string& source);

private:
    PulseRecorder(const PrivateSession& session,
                  const std::string& source,
                  const std::filesystem::path& file);

    ChildProcess process_;
};

} // namespace velmora::support
