#include "platform/pipewire/Session.h"

#include "platform/pipewire/keep/VirtualMicrophone.h"

#include <algorithm>
#include <cerrno>

#include <unistd.h>

namespace velmora::pipewire {
namespace {

using namespace std::chrono_literals;

constexpr auto firstRetryAfter = 200ms;
/// From the moment when a daemon has made its socket.
constexpr auto daemonListensAfter = 20ms;

/// While one client begins to follow the session manager's metadata, the daemon (0.3.65) gives
/// changes to that client only: of 120 changes beside a polling client, 7 were never told. So it is
/// read again shortly after anybody has come.
constexpr auto rereadAfter = 200ms;

/// A session manager that is killed while the daemon (0.3.65) waits for it on our behalf leaves the
/// daemon deaf to our connection for good; what it tells still arrives.
constexpr auto answerExpectedWithin = 1s;

/// While a node of ours lives. The thread that is told the rate must not wake anybody.
constexpr auto measureEvery = 500ms;

constexpr auto devicesExpectedWithin = 2s;
constexpr auto farewellLimit = 200ms;

} // namespace

std::optional<Device> SessionState::device(AudioObjectID id) {
    for (Device& device : listDevices(graph)) {
        if (ids.ofDevice(device.uid) == id) {
            return std::move(device);
        }
    }
    return std::nullopt;
}

std::string SessionState::newNodeName(std::string_view kind) {
    // Process numbers come back; the start time tells two runs with the same one apart.
    static const auto run = std::chrono::system_clock::now().time_since_epoch() / 1s;
    return "velmora." + std::string(kind) + "." + std::to_string(getpid()) + "." +
           std::to_string(run) + "." + std::to_string(++namesGiven_);
}

Session::Session(Events events)
    : loop_("velmora-control"), events_(std::move(events)), state_(getpid()),
      connection_(loop_.get(),
                  state_.graph,
                  {.changed = [this] { pass_.request(); },
                   .clientCame = [this] { onClientCame(); },
                   .managerLost = [this] { onManagerLost(); },
                   .lost = [this] { onLost(); }}),
      links_(connection_, state_.graph, LinkSet::Lifetime::ours, [this] { pass_.request(); }),
      retry_(loop_, [this] { connect(); }), retryPause_(firstRetryAfter),
      relink_(loop_, [this] { pass_.request(); }), probe_(loop_,
                                                          [this] {
                                                              if (!connection_.isAnswered()) {
                                                                  onLost();
                                                              }
                                                          }),
      reread_(loop_,
              [this] {
                  isRereadDue_ = false;
                  connection_.readSessionMetadataAgain();
                  if (std::exchange(isAnotherRereadDue_, false)) {
                      onClientCame();
                  }
              }),
      measure_(loop_, [this] { measureRate(); }), pass_(loop_, [this] { pass(); }),
      endedRoutes_(connection_, state_.graph, [this] { pass_.request(); }) {
    connect();
    loop_.start();
}

Session::~Session() {
    {
        // What the session manager is to forget has to reach it before we leave.
        Loop::Lock lock(loop_);
        state_.mutes.clear();
        muteSinks_.clear();
        connection_.startRoundTrip();
        lock.wait(farewellLimit,
                  [this] { return connection_.isListed() || !connection_.isOpen(); });
    }
    loop_.stop();
    forgetObjects();
    connection_.close();
}

void Session::connect() {
    lastStatus_ = connection_.open();
    if (lastStatus_ != statusOk) {
        connectLater();
        return;
    }
    socketWatch_.reset();
}

void Session::connectLater() {
    if (!socketWatch_) {
        socketWatch_ = std::make_unique<SocketWatch>(loop_, [this] {
            retryPause_.restart();
            retry_.start(daemonListensAfter);
        });
    }
    retry_.start(retryPause_.next());
}

void Session::onClientCame() {
    // Whoever comes last must be waited for as long as the first; and a steady coming and going
    // must not put it off for ever.
    if (!std::exchange(isRereadDue_, true)) {
        reread_.start(rereadAfter);
    } else {
        isAnotherRereadDue_ = true;
    }
}

void Session::onLost() {
    // Called from inside the connection: closing it is left to the pass.
    isLost_ = true;
    pass_.request();
}

void Session::onManagerLost() {
    // A new one may be there before the next pass looks.
    isManagerLost_ = true;
    pass_.request();
    connection_.probe();
    probe_.start(answerExpectedWithin);
}

void Session::forgetObjects() {
    muteSinks_.clear();
    aggregateSinks_.clear();
    links_.clear();
    endedRoutes_.clear();
    microphone_.reset();
    isMicrophoneSeen_ = false;
}

void Session::pass() {
    if (isLost_) {
        isLost_ = false;
        forgetObjects();
        if (nodeLife_) {
            nodeLife_->end(); // also one that the daemon has kept
        }
        connection_.close();
        state_.rate = {};
        defaultOutput_.lose();
        lastStatus_ = -EHOSTDOWN;
        connectLater();
    }
    followNode();
    passManagerLoss();
    readConfiguredRate();
    state_.processes.update(state_.graph);
    askForApplications();
    if (connection_.isListed()) {
        retryPause_.restart();
        passMutes();
        passLinks();
        endedRoutes_.follow();
        passVirtualMicrophone();
        passDefaultOutput();
    }
    passSurroundings();
    loop_.notify();
}

void Session::askForApplications() {
    std::set<std::int32_t> unknown;
    std::ranges::set_difference(
        state_.processes.unresolvedPids(), asked_, std::inserter(unknown, unknown.end()));
    asked_ = state_.processes.unresolvedPids();
    if (!unknown.empty()) {
        events_.unknownApplications(std::move(unknown));
    }
}

StatusOr<std::shared_ptr<MixNode>> Session::takeMixNode(const Wish& wish) {
    const std::string newName =
        change([](SessionState& state) { return state.newNodeName("mix"); });
    auto node = mixNodes_.take(
        {.name = newName, .blockFrames = wish.blockFrames, .rateHz = wish.rateHz, .died = [this] {
             pass_.request();
         }});
    if (node && (*node)->name() == newName) {
        change([&](SessionState&) {
            noticeDeath();
            nodeName_ = newName;
            nodeLife_ = (*node)->life();
            isNodeSeen_ = false;
            measure_.start(measureEvery);
        });
    }
    return node;
}

RouteId Session::addRoute(PartRoute route) {
    return change([&](SessionState& state) {
        const bool isConnectable = nodeLife_ && nodeName_ == route.ports.node;
        if (isConnectable) {
            state.routes[++lastRoute_] = std::move(route);
        }
        return isConnectable ? lastRoute_ : 0;
    });
}

void Session::endRoute(RouteId id, std::weak_ptr<MixNode> node) {
    change([&](SessionState& state) {
        if (const auto ended = state.routes.extract(id)) {
            endedRoutes_.add(std::move(node), std::move(ended.mapped().ports));
        }
    });
}

void Session::followNode() {
    const bool isThere = state_.graph.nodeNamed(nodeName_) != nullptr;
    if (std::exchange(isNodeSeen_, isThere) && !isThere && nodeLife_) {
        nodeLife_->end();
    }
    noticeDeath();
}

void Session::readConfiguredRate() {
    if (connection_.isListed()) {
        state_.rate.configure(state_.graph.configuredRate());
    }
}

void Session::measureRate() {
    if (!nodeLife_ || !nodeLife_->isAlive()) {
        state_.rate.stopMeasuring();
        return;
    }
    const double before = state_.rate.hz();
    state_.rate.measure(nodeLife_->rateHz());
    if (state_.rate.hz() != before) {
        pass_.request();
    }
    measure_.start(measureEvery);
}

void Session::noticeDeath() {
    if (nodeLife_ && nodeLife_->isDead()) {
        nodeLife_.reset();
        // It may still be in the graph; its parts are not to be connected again.
        std::erase_if(state_.routes,
                      [this](const auto& one) { return one.second.ports.node == nodeName_; });
        ++deaths_;
    }
}

void Session::passLinks() {
    const auto now = LinkSet::Clock::now();
    auto due = links_.apply(
        wantedLinks(state_.graph,
                    state_.routes,
                    [this](AudioObjectID process) { return state_.processes.streams(process); }),
        now);
    for (const auto& [uid, aggregate] : aggregates_) {
        auto& sink = aggregateSinks_[uid];
        if (!sink) {
            sink = std::make_unique<AggregateSink>(
                connection_, state_.graph, aggregate, [this] { pass_.request(); });
        }
        const auto its = sink->follow(now);
        due = due && its ? std::min(due, its) : std::max(due, its);
    }
    if (due) {
        relink_.start(std::chrono::ceil<std::chrono::milliseconds>(*due - now));
    }
}

void Session::passMutes() {
    std::erase_if(muteSinks_,
                  [this](const auto& one) { return !state_.mutes.contains(one.first); });
    for (const auto& [tap, process] : state_.mutes) {
        auto& sink = muteSinks_[tap];
        if (!sink) {
            sink = std::make_unique<MuteSink>(
                connection_, state_.graph, will_, [this] { return state_.newNodeName("mute"); });
        }
        if (isAvailableLocked()) {
            sink->follow(state_.processes.streams(process));
        }
    }
}

void Session::passVirtualMicrophone() {
    if (!state_.wantsVirtualMicrophone) {
        return;
    }
    const bool isKnown = knowsVirtualMicrophone(state_.graph);
    if (!isKnown && isMicrophoneSeen_) {
        microphone_.reset(); // somebody removed it
    }
    if (!isKnown && !microphone_) {
        microphone_ = createVirtualMicrophone(connection_);
    }
    isMicrophoneSeen_ = isKnown;
}

void Session::passManagerLoss() {
    if (std::exchange(isManagerLost_, false)) {
        defaultOutput_.lose();
        for (const auto& [tap, sink] : muteSinks_) {
            sink->forgetTargets();
        }
        told_.isAvailable = false; // also when it is back already
    }
}

void Session::passDefaultOutput() {
    if (!isAvailableLocked()) {
        return;
    }
    // Whoever is told starts anew, and for that needs the microphone to be there.
    if (state_.wantsVirtualMicrophone && !hasVirtualMicrophone(state_.graph)) {
        return;
    }
    if (defaultOutput_.update(defaultOutputUID()) && announces_) {
        events_.defaultOutputChanged();
    }
}

void Session::passSurroundings() {
    Surroundings now = surroundings();
    if (announces_ && now != told_) {
        told_ = std::move(now);
        events_.changed();
    }
}

Surroundings Session::surroundings() const {
    Surroundings now{.isAvailable = isAvailableLocked(), .deaths = deaths_};
    if (now.isAvailable) {
        now.devices = listDevices(state_.graph);
        now.processes = state_.processes.objects();
        now.rateHz = state_.rate.hz();
    }
    return now;
}

void Session::waitForListing(std::chrono::milliseconds limit) {
    Loop::Lock lock(loop_);
    lock.wait(limit, [this] { return !connection_.isOpen() || isAvailableLocked(); });
    if (isAvailableLocked()) {
        defaultOutput_.start(defaultOutputUID());
    }
    readConfiguredRate();
    told_ = surroundings();
    announces_ = true;
}

bool Session::isAvailable() const {
    const Loop::Lock lock(loop_);
    return isAvailableLocked();
}

bool Session::isAvailableLocked() const {
    return connection_.isListed() && state_.graph.hasMetadata("default");
}

std::string Session::problem() const {
    const Loop::Lock lock(loop_);
    if (!connection_.isOpen()) {
        return "PipeWire does not answer (err " + std::to_string(lastStatus_) + ")";
    }
    return isAvailableLocked() ? "" : "PipeWire's session manager does not answer";
}

std::optional<std::string> Session::defaultOutputUID() const {
    const auto device = defaultOutput(state_.graph);
    return device ? std::optional(device->uid) : std::nullopt;
}

Status Session::ensureVirtualMicrophone() {
    Loop::Lock lock(loop_);
    state_.wantsVirtualMicrophone = true;
    if (!connection_.isOpen()) {
        return -EHOSTDOWN;
    }
    pass_.request();
    const bool isThere = lock.wait(devicesExpectedWithin, [this] {
        return connection_.isListed() && hasVirtualMicrophone(state_.graph);
    });
    return isThere ? statusOk : -ETIMEDOUT;
}

Status Session::createAggregate(const PublicAggregate& aggregate) {
    Loop::Lock lock(loop_);
    if (!isAvailableLocked()) {
        return -EHOSTDOWN;
    }
    if (state_.graph.nodeNamed(aggregate.uid) != nullptr) {
        return -EEXIST;
    }
    aggregates_[aggregate.uid] = aggregate;
    pass_.request();
    const bool isThere = lock.wait(devicesExpectedWithin, [&] {
        const auto sink = aggregateSinks_.find(aggregate.uid);
        return sink != aggregateSinks_.end() && sink->second->isComplete();
    });
    if (!isThere) {
        forgetAggregate(aggregate.uid);
        return -ETIMEDOUT;
    }
    return statusOk;
}

void Session::forgetAggregate(const std::string& uid) {
    aggregates_.erase(uid);
    aggregateSinks_.erase(uid);
    if (const Node* const sink = state_.graph.nodeNamed(uid)) {
        connection_.destroyGlobal(sink->id);
    }
}

std::optional<std::string> Session::aggregateUID(AudioObjectID id) {
    const Loop::Lock lock(loop_);
    for (const auto& [uid, aggregate] : aggregates_) {
        if (state_.ids.ofDevice(uid) == id) {
            return uid;
        }
    }
    const auto device = state_.device(id);
    const bool isAggregate = device && device->transport == Transport::aggregate;
    return isAggregate ? std::optional(device->uid) : std::nullopt;
}

Status Session::destroyAggregate(const std::string& uid) {
    Loop::Lock lock(loop_);
    const bool wasThere = state_.graph.nodeNamed(uid) != nullptr;
    forgetAggregate(uid);
    if (!wasThere) {
        return -ENODEV;
    }
    const bool isGone =
        lock.wait(devicesExpectedWithin, [&] { return state_.graph.nodeNamed(uid) == nullptr; });
    return isGone ? statusOk : -ETIMEDOUT;
}

} // namespace velmora::pipewire
