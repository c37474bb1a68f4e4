// Session.h: the control side of the backend; keeps the daemon's graph as the mixer wants it.
#pragma once

#include "platform/pipewire/daemon/Connection.h"
#include "platform/pipewire/daemon/Loop.h"
#include "platform/pipewire/daemon/SocketWatch.h"
#include "platform/pipewire/keep/AggregateSink.h"
#include "platform/pipewire/keep/EndedRoutes.h"
#include "platform/pipewire/keep/LastWill.h"
#include "platform/pipewire/keep/LinkSet.h"
#include "platform/pipewire/keep/MuteSink.h"
#include "platform/pipewire/node/MixNode.h"
#include "platform/pipewire/node/NodeLife.h"
#include "platform/pipewire/view/DefaultOutputWatch.h"
#include "platform/pipewire/view/Devices.h"
#include "platform/pipewire/view/Graph.h"
#include "platform/pipewire/view/GraphRate.h"
#include "platform/pipewire/view/GrowingPause.h"
#include "platform/pipewire/view/ObjectIds.h"
#include "platform/pipewire/view/ProcessDirectory.h"
#include "platform/pipewire/view/Routes.h"
#include "platform/pipewire/view/Surroundings.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace velmora::pipewire {

/// Frames per cycle that our node asks for when nobody asked for others.
inline constexpr std::uint32_t usualBlockFrames = 128;

/// What is known and what is wanted. Guarded by the session's lock.
struct SessionState {
    Graph graph;
    GraphRate rate;
    ObjectIds ids;
    ProcessDirectory processes;
    Routes routes;                                      ///< links that the mix's parts want
    std::map<AudioObjectID, AudioObjectID> mutes;       ///< tap to the process that it silences
    std::map<AudioObjectID, std::uint32_t> blockFrames; ///< asked for, per device
    bool wantsVirtualMicrophone{};

    explicit SessionState(std::int32_t ownPid) : processes(ids, ownPid) {}

    /// One device by number. Numbers are given as devices are seen, hence not const.
    [[nodiscard]] std::optional<Device> device(AudioObjectID id);
    /// A `node.name` that was never used before, in any run.
    std::string newNodeName(std::string_view kind);

private:
    std::uint32_t namesGiven_{};
};

/// Owns the control thread. After every change, of the daemon's objects or of what is wanted, one
/// pass on that thread makes the links and mutes that follow from both. A lost connection is made
/// again by itself.
///
/// Threads: main; events come on the control thread.
class Session {
public:
    struct Events {
        std::function<void(std::set<std::int32_t> pids)> unknownApplications;
        // These are not told before `waitForListing` has returned, and in this order.
        std::function<void()> defaultOutputChanged;
        /// The service, a device or its channels, an application's process object or the rate is
        /// another one, or parts of the mix have died. Told once for all that is seen at a time.
        std::function<void()> changed;
    };

    explicit Session(Events events);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Waits until the service answers and is listed. Returns at once when there is no daemon.
    void waitForListing(std::chrono::milliseconds limit);

    /// True while daemon and session manager answer.
    [[nodiscard]] bool isAvailable() const;
    [[nodiscard]] std::string problem() const;

    /// Reads the state. Giving a device its number for the first time counts as reading.
    template <typename Function>
    auto read(Function function) {
        const Loop::Lock lock(loop_);
        return function(state_, isAvailableLocked());
    }

    /// Changes what is wanted; the pass follows at once.
    template <typename Function>
    auto change(Function function) {
        const Loop::Lock lock(loop_);
        pass_.request();
        return function(state_);
    }

    /// What a part asks of the graph's cycle.
    struct Wish {
        std::uint32_t blockFrames{usualBlockFrames}; ///< at `rateHz`; the smallest wish counts
        double rateHz{};
    };

    /// Opens one more part of the mix: `Part::open`, with `arguments`.
    /// Errors: the status; nothing is left open.
    template <typename Part, typename... Arguments>
    [[nodiscard]] StatusOr<std::unique_ptr<Part>> openPart(const Wish& wish,
                                                           Arguments&&... arguments) {
        auto node = takeMixNode(wish);
        if (!node) {
            return std::unexpected(node.error());
        }
        return Part::open(*std::move(node), std::forward<Arguments>(arguments)...);
    }

    /// Keeps a part connected; one whose node is dead is not.
    [[nodiscard]] RouteId addRoute(PartRoute route);
    /// Takes the links away; then the ports can serve another part of `node`.
    void endRoute(RouteId id, std::weak_ptr<MixNode> node);

    Status ensureVirtualMicrophone();

    /// Makes a public aggregate and waits shortly until it can be played to.
    Status createAggregate(const PublicAggregate& aggregate);
    /// None when this is no public aggregate, neither one of ours nor one that is there.
    [[nodiscard]] std::optional<std::string> aggregateUID(AudioObjectID id);
    /// Removes it, also one that an earlier run left; waits shortly until it has gone.
    Status destroyAggregate(const std::string& uid);

private:
    [[nodiscard]] StatusOr<std::shared_ptr<MixNode>> takeMixNode(const Wish& wish);
    void connect();
    void connectLater();
    void onLost();
    void onManagerLost();
    void onClientCame();
    void forgetObjects();
    void forgetAggregate(const std::string& uid);
    void pass();
    void askForApplications();
    void followNode();
    void noticeDeath();
    void readConfiguredRate();
    void measureRate();
    void passSurroundings();
    void passLinks();
    void passMutes();
    void passVirtualMicrophone();
    void passManagerLoss();
    void passDefaultOutput();
    [[nodiscard]] bool isAvailableLocked() const;
    [[nodiscard]] Surroundings surroundings() const;
    [[nodiscard]] std::optional<std::string> defaultOutputUID() const;

    Loop loop_;
    Events events_;
    SessionState state_;
    Connection connection_;
    LinkSet links_;
    LastWill will_;
    std::map<AudioObjectID, std::unique_ptr<MuteSink>> muteSinks_;
    std::map<std::string, PublicAggregate> aggregates_; // by UID; wanted
    std::map<std::string, std::unique_ptr<AggregateSink>> aggregateSinks_;
    ProxyHandle microphone_;
    bool isMicrophoneSeen_ = false;
    DefaultOutputWatch defaultOutput_;
    std::set<std::int32_t> asked_; // processes whose application was asked for
    bool isLost_ = false;
    bool isManagerLost_ = false;
    bool announces_ = false; // the first listing is no change
    Status lastStatus_ = statusOk;
    LoopTimer retry_;
    GrowingPause retryPause_;
    std::unique_ptr<SocketWatch> socketWatch_; // while there is no daemon
    LoopTimer relink_;
    LoopTimer probe_;
    LoopTimer reread_;
    LoopTimer measure_;
    bool isRereadDue_ = false;
    bool isAnotherRereadDue_ = false;
    LoopWork pass_;
    MixNodes mixNodes_;
    RouteId lastRoute_ = 0;
    EndedRoutes endedRoutes_;
    std::string nodeName_;               // of our latest node
    std::shared_ptr<NodeLife> nodeLife_; // none once its death is counted
    bool isNodeSeen_ = false;
    std::uint32_t deaths_ = 0;
    Surroundings told_;
};

} // namespace velmora::pipewire
