#include "platform/pipewire/Session.h"

#include "platform/pipewire/daemon/NodeVolume.h"
#include "platform/pipewire/view/Earliest.h"
#include "platform/pipewire/view/Recording.h"

#include <algorithm>
#include <cerrno>
#include <iterator>

#include <unistd.h>

namespace velmora::pipewire {
namespace {

using namespace std::chrono_literals;

/// A session manager that is killed while the daemon (0.3.65) waits for it on our behalf leaves the
/// daemon deaf to our connection for good; what it tells still arrives.
constexpr auto answerExpectedWithin = 1s;

constexpr auto devicesExpectedWithin = 2s;
constexpr auto farewellLimit = 200ms;

} // namespace

Session::Session(Events events, std::string_view knownCards)
    : loop_("velmora-control"), events_(std::move(events)), state_(getpid(), knownCards),
      begin_(loop_, [this] { goFirst(); }), pass_(loop_, [this] { pass(); }),
      connection_(loop_.get(),
                  state_.graph,
                  {.changed = [this] { pass_.request(); },
                   .clientCame = [this] { refresh_.clientCame(); },
                   .metadataTold =
                       [this](GlobalId stream, const std::string& key) {
                           mutes_.hear(stream, key, Clock::now());
                       },
                   .managerLost = [this] { onManagerLost(); },
                   .lost = [this] { onLost(); }}),
      search_(loop_, [this] { connect(); }), probe_(loop_, [this] { onProbeTime(); }),
      refresh_(loop_, [this] { connection_.readSessionMetadataAgain(); }),
      links_(connection_, state_.graph, LinkSet::Lifetime::ours, [this] { pass_.request(); }),
      again_(loop_, [this] { pass_.request(); }),
      endedRoutes_(connection_, state_.graph, [this] { pass_.request(); }),
      mutes_(connection_, state_.graph, [this] { return state_.newNodeName("mute"); }),
      aggregates_(connection_, state_.graph, [this] { pass_.request(); }),
      microphone_(connection_, state_.graph),
      headsets_(connection_, state_.graph, [this] { return state_.newNodeName("headset"); }),
      nodeWatch_(loop_, state_.rate, [this] { pass_.request(); }) {
    begin_.request();
    connect();
    loop_.start();
}

Session::~Session() {
    {
        // What the session manager is to forget has to reach it before we leave.
        Loop::Lock lock(loop_);
        state_.mutes.clear();
        mutes_.clear();
        connection_.startRoundTrip();
        lock.wait(farewellLimit, [this] {
            const bool isTaken = connection_.isListed() && mutes_.isSettled(Clock::now());
            return isTaken || !connection_.isOpen();
        });
    }
    loop_.stop();
    forgetObjects();
    connection_.close();
}

void Session::connect() {
    if (connection_.open() == statusOk) {
        search_.pause();
    } else {
        search_.goOn();
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

void Session::onProbeTime() {
    if (!connection_.isAnswered()) {
        onLost();
    }
}

void Session::forgetObjects() {
    mutes_.clear();
    aggregates_.clear();
    links_.clear();
    endedRoutes_.clear();
    microphone_.clear();
    headsets_.clear();
}

/// What a silenced application starts has to be sent away before the session manager has linked it.
void Session::goFirst() {
    if (!pipewire::goFirst(currentThread())) {
        events_.notFirst(currentThread());
    }
}

void Session::pass() {
    due_.reset();
    passLosses();
    passNode();
    passRate();
    passCards();
    passApplications();
    if (connection_.isListed()) {
        search_.end();
        passMutes();
        passLinks();
        endedRoutes_.follow();
        microphone_.follow();
        headsets_.follow(state_.routes);
    }
    passNews();
    loop_.notify();
}

void Session::passLosses() {
    if (std::exchange(isLost_, false)) {
        mutes_.lose();
        forgetObjects();
        nodeWatch_.lose();
        connection_.close();
        state_.rate = {};
        news_.lose();
        search_.goOn();
    }
    if (std::exchange(isManagerLost_, false)) {
        // A session manager that comes waits in vain for the ports of a device that has played
        // under the one before (WirePlumber 0.4.13 with PipeWire 0.3.65), and links nothing as long
        // as it waits, of nobody. Those of sound cards go with their manager; ours must not stay
        // either.
        mutes_.forgetTargets();
        aggregates_.renew();
        microphone_.renew();
        news_.lose();
    }
}

void Session::passNode() {
    if (const auto dead = nodeWatch_.follow(state_.graph)) {
        forgetRoutesOf(*dead);
    }
}

/// The node may still be in the graph; its parts are not to be connected again.
void Session::forgetRoutesOf(const std::string& node) {
    std::erase_if(state_.routes, [&](const auto& one) { return one.second.ports.node == node; });
}

void Session::passRate() {
    if (connection_.isListed()) {
        state_.rate.configure(state_.graph.configuredRate());
    }
}

void Session::passCards() {
    if (connection_.isListed() && state_.cards.follow(state_.graph)) {
        events_.cardsNamed(state_.cards.kept());
    }
}

void Session::passApplications() {
    state_.processes.update(state_.graph);
    ProcessDirectory::Claims unknown = state_.processes.unresolved();
    std::erase_if(unknown, [this](const auto& one) {
        const auto asked = asked_.find(one.first);
        return asked != asked_.end() && asked->second == one.second;
    });
    asked_ = state_.processes.unresolved();
    if (!unknown.empty()) {
        events_.unknownApplications(std::move(unknown));
    }
}

void Session::endMuteSoon(AudioObjectID mute) {
    const bool isEnding = change([mute](SessionState& state) {
        auto ended = state.mutes.extract(mute);
        return !ended.empty() && state.endingMutes.insert(std::move(ended)).inserted;
    });
    if (isEnding) {
        events_.muteEnding(mute);
    }
}

void Session::endMute(AudioObjectID mute) {
    change([mute](SessionState& state) { state.endingMutes.erase(mute); });
}

void Session::passMutes() {
    const auto now = Clock::now();
    comeAgain(mutes_.keepOnly(state_.mutes, state_.endingMutes, now));
    if (isAvailableLocked()) {
        comeAgain(mutes_.follow(state_.mutes, streamsOf(), now));
    }
    state_.unsilenced = mutes_.unsilenced();
}

void Session::passLinks() {
    const auto now = Clock::now();
    const auto links = links_.apply(wantedLinks(state_.graph, state_.routes, streamsOf()), now);
    comeAgain(earliest(links, aggregates_.follow(now)));
}

/// What is due earlier is not put off by what is due later.
void Session::comeAgain(std::optional<Clock::time_point> due) {
    due_ = earliest(due_, due);
    if (due_) {
        again_.start(std::max(std::chrono::ceil<std::chrono::milliseconds>(*due_ - Clock::now()),
                              std::chrono::milliseconds(1)));
    }
}

void Session::passNews() {
    const News::Due due = news_.update(surroundings());
    if (due.isDefaultOutputNew) {
        events_.defaultOutputChanged();
    }
    if (due.isAnythingElseNew) {
        events_.changed();
    }
}

Surroundings Session::surroundings() const {
    Surroundings now{.isAvailable = isAvailableLocked(), .deaths = nodeWatch_.deaths()};
    if (now.isAvailable) {
        now.devices = listDevices(state_.graph);
        for (const AudioObjectID process : state_.processes.objects()) {
            now.processes[process] = state_.sound(process);
        }
        now.recorded = recordedDevices(state_.graph, state_.processes);
        now.rateHz = state_.rate.hz();
        now.defaultOutput = state_.defaultOutputUID();
        now.lacksMicrophone = microphone_.isMissing();
    }
    return now;
}

StreamsOf Session::streamsOf() const {
    return [this](AudioObjectID process) { return state_.processes.streams(process); };
}

StatusOr<std::shared_ptr<MixNode>> Session::takeMixNode(const Wish& wish) {
    const std::string newName =
        change([](SessionState& state) { return state.newNodeName("mix"); });
    auto node = mixNodes_.take(
        {.name = newName, .blockFrames = wish.blockFrames, .rateHz = wish.rateHz, .died = [this] {
             pass_.request();
         }});
    if (node && (*node)->name() == newName) {
        const Loop::Lock lock(loop_);
        if (const auto dead = nodeWatch_.watch(**node)) {
            forgetRoutesOf(*dead);
            pass_.request();
        }
    }
    return node;
}

RouteId Session::addRoute(PartRoute route) {
    return change([&](SessionState& state) {
        const RouteId id = ++lastRoute_;
        if (nodeWatch_.isWatched(route.ports.node)) {
            state.routes[id] = std::move(route);
        }
        return id;
    });
}

void Session::endRoute(RouteId id, std::weak_ptr<MixNode> node) {
    change([&](SessionState& state) {
        if (const auto ended = state.routes.extract(id)) {
            endedRoutes_.add(std::move(node), std::move(ended.mapped().ports));
        }
    });
}

void Session::waitForListing(std::chrono::milliseconds limit) {
    Loop::Lock lock(loop_);
    lock.wait(limit, [this] { return !connection_.isOpen() || isAvailableLocked(); });
    passRate();
    passCards();
    news_.start(surroundings());
}

bool Session::isAvailable() const {
    const Loop::Lock lock(loop_);
    return isAvailableLocked();
}

bool Session::isAvailableLocked() const {
    return connection_.isListed() && state_.graph.hasMetadata("default");
}

Status Session::ensureVirtualMicrophone() {
    Loop::Lock lock(loop_);
    microphone_.want();
    if (!connection_.isOpen()) {
        return -EHOSTDOWN;
    }
    pass_.request();
    const bool isThere = lock.wait(devicesExpectedWithin, [this] {
        return connection_.isListed() && !microphone_.isMissing();
    });
    return isThere ? statusOk : -ETIMEDOUT;
}

Status Session::requestVolume(AudioObjectID device, const DeviceVolume& volume) {
    const Loop::Lock lock(loop_);
    const auto found = isAvailableLocked() ? state_.device(device) : std::nullopt;
    if (!found || !found->volume) {
        return -ENODEV;
    }
    return pipewire::requestVolume(
        connection_, state_.graph.node(found->node)->id, found->inputs, volume);
}

Status Session::createAggregate(const PublicAggregate& aggregate) {
    Loop::Lock lock(loop_);
    if (!isAvailableLocked()) {
        return -EHOSTDOWN;
    }
    if (state_.graph.nodeNamed(aggregate.uid) != nullptr) {
        return -EEXIST;
    }
    aggregates_.want(aggregate);
    pass_.request();
    if (!lock.wait(devicesExpectedWithin, [&] { return aggregates_.isComplete(aggregate.uid); })) {
        aggregates_.remove(aggregate.uid);
        return -ETIMEDOUT;
    }
    return statusOk;
}

std::optional<std::string> Session::aggregateUID(AudioObjectID id) {
    const Loop::Lock lock(loop_);
    for (const std::string& uid : aggregates_.wanted()) {
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
    aggregates_.remove(uid);
    if (!wasThere) {
        return -ENODEV;
    }
    const bool isGone =
        lock.wait(devicesExpectedWithin, [&] { return state_.graph.nodeNamed(uid) == nullptr; });
    return isGone ? statusOk : -ETIMEDOUT;
}

} // namespace velmora::pipewire
