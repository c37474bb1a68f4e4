// MuteSink.h: a silent place for one application's streams to play to.
#pragma once

#include "platform/AudioDevices.h"
#include "platform/pipewire/daemon/Connection.h"
#include "platform/pipewire/daemon/Handles.h"
#include "platform/pipewire/keep/LastWill.h"
#include "platform/pipewire/keep/MutedStream.h"
#include "platform/pipewire/view/Graph.h"
#include "platform/pipewire/view/Routes.h"

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace velmora::pipewire {

/// Sends streams to a private sink that nobody hears, for as long as this object lives.
///
/// Nothing of it outlives this program: the sink goes with our connection, the session manager then
/// plays the streams where it did before, and of a killed program the last will removes the rest.
///
/// Threads: any, with the control loop's lock.
class MuteSink {
public:
    /// @param newName  gives a `node.name` that was never used before, so that a remembered one
    ///                 cannot match
    MuteSink(Connection& connection,
             const Graph& graph,
             LastWill& will,
             std::function<std::string()> newName);
    /// Gives every stream back the target that it had, unless the user has sent it elsewhere since.
    ~MuteSink();
    MuteSink(const MuteSink&) = delete;
    MuteSink& operator=(const MuteSink&) = delete;

    /// Sends every stream of `streams` here that is not here yet, and takes away what the session
    /// manager has left of its links to where it played before. A sink that somebody else has
    /// removed is replaced.
    void follow(const std::vector<Serial>& streams);

    /// The session manager has gone and with it all targets: everything is to be sent again.
    void forgetTargets();

private:
    void makeSink(const std::vector<Serial>& streams);
    void send(const Node& stream, Serial sink);
    void removeLeftLinks(Serial stream, Serial sink);
    /// Takes from the list whatever `isPast`.
    template <typename Predicate>
    void forget(Predicate isPast);

    Connection& connection_;
    const Graph& graph_;
    LastWill& will_;
    std::function<std::string()> newName_;
    std::string name_;
    ProxyHandle sink_;
    bool isSinkSeen_ = false;
    std::vector<MutedStream> muted_;
    std::set<Serial> removedLinks_;
};

/// One for each mute that is wanted.
/// Threads: any, with the control loop's lock.
class MuteSinks {
public:
    using Mutes = std::map<AudioObjectID, AudioObjectID>; ///< whose mute, and which process

    /// @param newName  as `MuteSink`
    MuteSinks(Connection& connection, const Graph& graph, std::function<std::string()> newName)
        : connection_(connection), graph_(graph), newName_(std::move(newName)) {}

    /// To be called after every change of the graph, while the session manager is there.
    void follow(const Mutes& wanted, const StreamsOf& streamsOf);
    /// Ends those that are not wanted any more.
    void keepOnly(const Mutes& wanted);
    /// As for one.
    void forgetTargets();
    /// To be called before the connection closes.
    void clear() { sinks_.clear(); }

private:
    Connection& connection_;
    const Graph& graph_;
    std::function<std::string()> newName_;
    LastWill will_;
    std::map<AudioObjectID, std::unique_ptr<MuteSink>> sinks_;
};

} // namespace velmora::pipewire
