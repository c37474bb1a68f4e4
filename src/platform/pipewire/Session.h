// Session.h: the control side of the backend; keeps the daemon's graph as the mixer wants it.
#pragma once

#include "platform/Status.h"
#include "platform/pipewire/SessionState.h"
#include "platform/pipewire/daemon/Connection.h"
#include "platform/pipewire/daemon/DaemonSearch.h"
#include "platform/pipewire/daemon/Loop.h"
#include "platform/pipewire/daemon/MetadataRefresh.h"
#include "platform/pipewire/keep/AggregateSink.h"
#include "platform/pipewire/keep/EndedRoutes.h"
#include "platform/pipewire/keep/HeadsetClients.h"
#include "platform/pipewire/keep/LinkSet.h"
#include "platform/pipewire/keep/MuteSinks.h"
#include "platform/pipewire/keep/VirtualMicrophone.h"
#include "platform/pipewire/node/MixNode.h"
#include "platform/pipewire/node/NodeWatch.h"
#include "platform/pipewire/view/News.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace velmora::pipewire {

/// Owns the control thread. After every change, of the daemon's objects or of what is wanted, one
/// pass on that thread makes the links and mutes that follow from both. A lost connection is made
/// again by itself.
///
/// Threads: main; events come on the control thread.
class Session {
public:
    struct Events {
        std::function<void(ProcessDirectory::Claims claims)> unknownApplications;
        /// The kernel does not let the control thread go first.
        std::function<void(ThreadId control)> notFirst;
        /// What a later run is to know of cards; see `CardNames::kept`.
        std::function<void(std::string kept)> cardsNamed;
        /// The main thread closes what silenced an application, and may open another in a moment:
        /// `endMute` is to be called once that thread is free. Told on the main thread.
        std::function<void(AudioObjectID mute)> muteEnding;
        // These are not told before `waitForListing` has returned, and in this order.
        std::function<void()> defaultOutputChanged;
        /// The service, a device or its channels, an application's process object or the rate is
        /// another one, or parts of the mix have died. Told once for all that is seen at a time.
        std::function<void()> changed;
    };

    /// @param knownCards  what the latest `cardsNamed` told
    Session(Events events, std::string_view knownCards);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Waits until the service answers and is listed. Returns at once when there is no daemon.
    void waitForListing(std::chrono::milliseconds limit);

    /// True while daemon and session manager answer.
    [[nodiscard]] bool isAvailable() const;

    /// Reads the state. Giving a device its number for the first time counts as reading.
    template <typename Function>
    auto read(Function function) {
        const Loop::Lock lock(loop_);
        return function(state_, isAvailableLocked());
    }

    /// Whoever was silenced by it stays so until the main thread is free, however long it takes to
    /// build a mix anew, and for as long as `MuteGrace` says from then on.
    void endMuteSoon(AudioObjectID mute);
    void endMute(AudioObjectID mute);

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

    /// See `AudioUnits`.
    void askForBlocksOf(std::uint32_t leastFrames) { mixNodes_.askForAtLeast(leastFrames); }
    [[nodiscard]] BlockReport blocks() const { return mixNodes_.blocks(); }

    /// Keeps a part connected; one whose node is dead is not.
    [[nodiscard]] RouteId addRoute(PartRoute route);
    /// Takes the links away; then the ports can serve another part of `node`.
    void endRoute(RouteId id, std::weak_ptr<MixNode> node);

    /// See `PipeWireAudio`.
    Status ensureVirtualMicrophone();

    /// Asks for a virtual source's volume; the graph tells it when it is so.
    Status requestVolume(AudioObjectID device, const DeviceVolume& volume);

    /// Makes a public aggregate and waits shortly until it can be played to.
    Status createAggregate(const PublicAggregate& aggregate);
    /// None when this is no public aggregate, neither one of ours nor one that is there.
    [[nodiscard]] std::optional<std::string> aggregateUID(AudioObjectID id);
    /// Removes it, also one that an earlier run left; waits shortly until it has gone.
    Status destroyAggregate(const std::string& uid);

private:
    using Clock = LinkSet::Clock;
    [[nodiscard]] StatusOr<std::shared_ptr<MixNode>> takeMixNode(const Wish& wish);
    void connect();
    void onLost();
    void onManagerLost();
    void onProbeTime();
    void forgetObjects();
    void forgetRoutesOf(const std::string& node);

    void goFirst();
    void pass();
    void passLosses();
    void passNode();
    void passRate();
    void passCards();
    void passApplications();
    void passMutes();
    void passLinks();
    void passNews();
    void comeAgain(std::optional<Clock::time_point> due);

    [[nodiscard]] bool isAvailableLocked() const;
    [[nodiscard]] StreamsOf streamsOf() const;
    [[nodiscard]] Surroundings surroundings() const;

    Loop loop_;
    Events events_;
    SessionState state_;
    LoopWork begin_;
    LoopWork pass_;
    Connection connection_;
    DaemonSearch search_;
    LoopTimer probe_;
    MetadataRefresh refresh_;
    bool isLost_ = false;
    bool isManagerLost_ = false;

    LinkSet links_;
    LoopTimer again_;
    std::optional<Clock::time_point> due_; // of the pass under way
    EndedRoutes endedRoutes_;
    MuteSinks mutes_;
    AggregateSinks aggregates_;
    VirtualMicrophone microphone_;
    HeadsetClients headsets_;
    MixNodes mixNodes_;
    NodeWatch nodeWatch_;
    RouteId lastRoute_ = 0;
    ProcessDirectory::Claims asked_; // whose application was asked for
    News news_;
};

} // namespace velmora::pipewire
