// MuteSinks.h: the mutes of all applications.
#pragma once

#include "platform/AudioDevices.h"
#include "platform/pipewire/keep/MuteSink.h"
#include "platform/pipewire/view/MuteGrace.h"
#include "platform/pipewire/view/Routes.h"

#include <map>
#include <memory>
#include <set>
#include <string>

namespace velmora::pipewire {

/// One sink for each application that anybody wants to be silent.
/// Threads: any, with the control loop's lock.
class MuteSinks {
public:
    using Clock = MuteSink::Clock;
    using Mutes = std::map<AudioObjectID, AudioObjectID>; ///< whose mute, and which process

    /// @param newName  as `MuteTools`
    MuteSinks(Connection& connection, const Graph& graph, std::function<std::string()> newName);

    /// To be called after every change of the graph, while the session manager is there. Returns
    /// when to come again, if anything is to be looked at later.
    std::optional<Clock::time_point>
    follow(const Mutes& wanted, const StreamsOf& streamsOf, Clock::time_point now);
    /// To be called for every entry of the session's metadata as it comes.
    void hear(GlobalId subject, const std::string& key, Clock::time_point now);
    /// Ends those that are not wanted any more, a moment after they have left `ending` as well (see
    /// `MuteGrace`). Returns when to come again, if any is to be ended.
    std::optional<Clock::time_point>
    keepOnly(const Mutes& wanted, const Mutes& ending, Clock::time_point now);
    /// The processes that are wanted silent and are heard all the same.
    [[nodiscard]] std::set<AudioObjectID> unsilenced() const;
    /// As for one.
    void forgetTargets();
    /// The daemon has gone, and every object with it.
    void lose();
    /// To be called before the connection closes: gives everything back.
    void clear();
    /// What was given back has arrived.
    [[nodiscard]] bool isSettled(Clock::time_point now) const { return givenBack_.isSettled(now); }

private:
    RouteMemory memory_;
    LastWill will_;
    RouteWriter writer_;
    GivenBackStreams givenBack_;
    MuteTools tools_;
    MuteGrace grace_;
    std::map<AudioObjectID, std::unique_ptr<MuteSink>> sinks_; // by process
};

} // namespace velmora::pipewire
