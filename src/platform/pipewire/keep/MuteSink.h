// MuteSink.h: a silent place for one application's streams to play to.
#pragma once

#include "platform/pipewire/daemon/Connection.h"
#include "platform/pipewire/daemon/Handles.h"
#include "platform/pipewire/keep/GivenBackStreams.h"
#include "platform/pipewire/keep/LastWill.h"
#include "platform/pipewire/keep/MutedStream.h"
#include "platform/pipewire/keep/RouteMemory.h"
#include "platform/pipewire/keep/RouteWriter.h"
#include "platform/pipewire/view/Graph.h"

#include <chrono>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace velmora::pipewire {

/// What all mutes need; it outlives them.
struct MuteTools {
    Connection& connection;
    const Graph& graph;
    LastWill& will;
    RouteMemory& memory;
    RouteWriter& writer;
    GivenBackStreams& givenBack;
    /// Gives a `node.name` that was never used before, so that a remembered one cannot match.
    std::function<std::string()> newName;

    /// The stream has been given its targets back.
    void gaveBack(Serial stream, GivenBack given, std::chrono::steady_clock::time_point now) const;
    /// Has the session manager remember a device (see `RouteMemory`), also when we end before.
    void remember(const RouteKey& key, const std::string& device) const;
};

/// Sends streams to a private sink that nobody hears, for as long as this object lives.
///
/// Nothing of it outlives this program: the sink goes with our connection, the session manager then
/// plays the streams where it did before, and of a killed program the last will removes the rest.
/// Streams that the session manager does not move are left where they are.
///
/// Threads: any, with the control loop's lock.
class MuteSink {
public:
    using Clock = std::chrono::steady_clock;

    explicit MuteSink(const MuteTools& tools) : tools_(tools) {}
    /// Gives every stream back the target that it had, unless the user has sent it elsewhere since.
    ~MuteSink();
    MuteSink(const MuteSink&) = delete;
    MuteSink& operator=(const MuteSink&) = delete;

    /// Sends every stream of `streams` here that is not here yet, and takes away what the session
    /// manager has left of its links to where it played before. A sink that somebody else has
    /// removed is replaced; a stream that somebody else has sent away is fetched back, but not
    /// again and again. Returns when to come again, if anything is to be looked at later.
    std::optional<Clock::time_point> follow(const std::vector<Serial>& streams,
                                            Clock::time_point now);

    /// To be called for every entry about a stream as it comes, see `RouteMemory::hear`.
    void hear(const Node& stream, const char* key, Clock::time_point now);

    /// None of the streams is heard where it was; false until that is so again.
    [[nodiscard]] bool isSilencing() const { return isSilencing_; }

    /// The session manager has gone and with it all targets: everything is to be sent again, to a
    /// new sink (see `Session::passLosses`).
    void forgetTargets();

private:
    struct Sent {
        MutedStream muted;
        std::vector<Clock::time_point> fetched;       ///< back, during the last minute
        std::optional<Clock::time_point> askedAt{};   ///< to come here; not yet seen to be obeyed
        std::optional<Clock::time_point> awaySince{}; ///< somebody has sent it elsewhere
        std::optional<Clock::time_point> heardSince{};
        /// A device that somebody chose before our order arrived; empty = none.
        std::optional<std::string> overtaken{};
        bool isGivenUp = false; ///< somebody keeps sending it elsewhere
    };
    void makeSink(const std::vector<Serial>& streams);
    std::optional<Clock::time_point>
    follow(const Node& stream, const Node& sink, Clock::time_point now);
    Sent& send(const Node& stream, Serial sink, Clock::time_point now);
    std::optional<Clock::time_point>
    fetchBack(const Node& stream, Sent& sent, Clock::time_point now);
    std::optional<Clock::time_point> listen(const Node& stream, Sent& sent, Clock::time_point now);
    void tell(const Node& stream, Sent& sent, const std::string& stored, Clock::time_point now);
    void removeLeftLinks(Serial stream, Serial sink);
    /// Takes from the list whatever `isPast`.
    template <typename Predicate>
    void forget(Predicate isPast);

    const MuteTools& tools_;
    std::string name_;
    ProxyHandle sink_;
    bool isSinkSeen_ = false;
    bool isSilencing_ = true;
    std::vector<Sent> sent_;
    std::set<Serial> removedLinks_;
};

} // namespace velmora::pipewire
