#include "platform/pipewire/keep/MuteSink.h"

#include "platform/pipewire/view/Earliest.h"
#include "platform/pipewire/view/Muting.h"
#include "platform/pipewire/view/StreamTarget.h"

#include <algorithm>
#include <utility>

namespace velmora::pipewire {
namespace {

using namespace std::chrono_literals;

/// A target that is not ours has to stay that long: what we have asked for ourselves, and a list of
/// targets that was read again, may arrive in another order.
constexpr auto staysAway = 30ms;

/// On a busy machine, what we have asked for is seen to be so by then; until then nobody is taken
/// for somebody who sends the stream away.
constexpr auto answersWithin = 400ms;

/// Whoever sends a stream elsewhere more often than this, within this time, means it.
constexpr std::size_t mostFetches = 3;
constexpr auto fetchesCount = 1min;

/// The session manager moves a stream within 6 ms; what is heard that long was not moved.
constexpr auto movesWithin = 500ms;

} // namespace

void MuteTools::remember(const RouteKey& key, const std::string& device) const {
    will.add(key, device);
    writer.write(key, device);
}

void MuteTools::gaveBack(Serial stream,
                         GivenBack given,
                         std::chrono::steady_clock::time_point now) const {
    for (const TargetOrder& order : given.orders) {
        if (order.value) {
            memory.expect(stream, order.key, order.value->value, now);
        }
    }
    givenBack.add(stream, std::move(given.orders), now);
}

MuteSink::~MuteSink() {
    const auto now = Clock::now();
    for (const Sent& sent : sent_) {
        const Node* const stream = tools_.graph.node(sent.muted.stream);
        const std::string stored = stream == nullptr ? "" : tools_.memory.device(*stream, now);
        const bool isOrderUnderWay = sent.askedAt.has_value() && !sent.isGivenUp;
        GivenBack given =
            giveBack(tools_.connection, tools_.graph, sent.muted, stored, isOrderUnderWay);
        if (!given.isRemembered) {
            tools_.remember(stream->routeKey, stored);
        }
        tools_.gaveBack(sent.muted.stream, std::move(given), now);
    }
    forgetTargets();
}

void MuteSink::forgetTargets() {
    forget([](const Sent&) { return true; });
    sink_.reset();
}

template <typename Predicate>
void MuteSink::forget(Predicate isPast) {
    std::erase_if(sent_, [&](const Sent& sent) {
        const bool goes = isPast(sent);
        if (goes) {
            tools_.will.remove(sent.muted.stream);
        }
        return goes;
    });
}

std::optional<MuteSink::Clock::time_point> MuteSink::follow(const std::vector<Serial>& streams,
                                                            Clock::time_point now) {
    forget([this](const Sent& sent) { return tools_.graph.node(sent.muted.stream) == nullptr; });
    isSilencing_ = canBeMuted(tools_.graph, streams);
    const Node* const sink = sink_ ? tools_.graph.nodeNamed(name_) : nullptr;
    if (!sink_ || (isSinkSeen_ && sink == nullptr)) {
        makeSink(streams);
        return std::nullopt;
    }
    isSinkSeen_ = sink != nullptr;
    if (sink == nullptr || sink->ports.empty()) {
        return std::nullopt; // comes with a later change of the graph
    }
    std::optional<Clock::time_point> comeAgain;
    for (const Serial serial : streams) {
        const Node* const stream = tools_.graph.node(serial);
        if (stream != nullptr && isMovableStream(*stream)) {
            comeAgain = earliest(comeAgain, follow(*stream, *sink, now));
        }
    }
    return comeAgain;
}

std::optional<MuteSink::Clock::time_point>
MuteSink::follow(const Node& stream, const Node& sink, Clock::time_point now) {
    Sent& sent = send(stream, sink.serial, now);
    const auto fetchAt = fetchBack(stream, sent, now);
    removeLeftLinks(stream.serial, sink.serial);
    const auto listenAt = listen(stream, sent, now);
    return earliest(fetchAt, listenAt);
}

void MuteSink::hear(const Node& stream, const char* key, Clock::time_point now) {
    const auto sent = std::ranges::find_if(
        sent_, [&](const Sent& one) { return one.muted.stream == stream.serial; });
    if (sent == sent_.end() || sent->isGivenUp) {
        return;
    }
    if (auto chosen = takeOverChoice(tools_.graph, sent->muted, key)) {
        sent->overtaken = std::move(chosen);
        return;
    }
    const auto target = tools_.graph.metadata(sessionMetadata, stream.id, targetObjectKey);
    const bool isOurOrder =
        key == targetObjectKey && target && target->value == std::to_string(sent->muted.sink);
    if (isOurOrder && sent->overtaken) {
        // With that order went what was to be remembered before.
        const std::string chosen = *std::exchange(sent->overtaken, std::nullopt);
        tell(stream, *sent, chosen, now);
    }
}

void MuteSink::removeLeftLinks(Serial stream, Serial sink) {
    for (const Serial link : leftLinks(tools_.graph, stream, sink)) {
        // Once only: by a second time the id may be another object's.
        if (removedLinks_.insert(link).second) {
            tools_.connection.destroyGlobal(tools_.graph.links().at(link).id);
        }
    }
}

void MuteSink::makeSink(const std::vector<Serial>& streams) {
    name_ = tools_.newName();
    isSinkSeen_ = false;
    sink_ = tools_.connection.create("adapter",
                                     PW_TYPE_INTERFACE_Node,
                                     PW_VERSION_NODE,
                                     {{"factory.name", "support.null-audio-sink"},
                                      {"media.class", "Audio/Sink/Internal"},
                                      {"node.name", name_},
                                      {"node.description", "Velmora Mute"},
                                      {"audio.position", targetLayout(tools_.graph, streams)},
                                      {"node.virtual", "true"},
                                      {"priority.session", "0"},
                                      {"priority.driver", "0"},
                                      // WirePlumber 0.4.13 crashes (suspend-node.lua) when a sink
                                      // goes while it is waiting to be suspended.
                                      {"session.suspend-timeout-seconds", "0"},
                                      // Keeps its volume out of the session manager's files.
                                      {"device.routes", "1"}});
}

MuteSink::Sent& MuteSink::send(const Node& stream, Serial sink, Clock::time_point now) {
    const auto isStream = [&](const Sent& sent) { return sent.muted.stream == stream.serial; };
    const auto known = std::ranges::find_if(sent_, isStream);
    if (known != sent_.end() && known->muted.sink == sink) {
        return *known;
    }
    const bool isNew = known == sent_.end();
    Sent& sent = isNew ? sent_.emplace_back() : *known;
    if (isNew) {
        sent.muted = muteOf(tools_.graph, stream, sink);
        tools_.givenBack.remove(stream.serial);
    }
    sent.muted.sink = sink; // what a known one names now is our own sink before this one
    tell(stream, sent, tools_.memory.device(stream, now), now);
    return sent;
}

void MuteSink::tell(const Node& stream,
                    Sent& sent,
                    const std::string& stored,
                    Clock::time_point now) {
    tools_.will.add(sent.muted);
    sendToSink(tools_.connection, tools_.graph, sent.muted, stored);
    sent.askedAt = now;
    const bool isToldSo = stored.empty() || deviceNamed(tools_.graph, stored) != nullptr;
    if (!isToldSo) {
        tools_.remember(stream.routeKey, stored);
    }
}

/// From where somebody else has sent it.
std::optional<MuteSink::Clock::time_point>
MuteSink::fetchBack(const Node& stream, Sent& sent, Clock::time_point now) {
    const auto target = tools_.graph.metadata(sessionMetadata, stream.id, targetObjectKey);
    if (target && target->value == std::to_string(sent.muted.sink)) {
        sent.awaySince.reset();
        sent.askedAt.reset();
        return std::nullopt;
    }
    isSilencing_ = isSilencing_ && !sent.isGivenUp;
    if (sent.isGivenUp) {
        return std::nullopt;
    }
    if (sent.askedAt && now < *sent.askedAt + answersWithin) {
        return *sent.askedAt + answersWithin;
    }
    sent.askedAt.reset();
    sent.awaySince = sent.awaySince.value_or(now);
    if (now < *sent.awaySince + staysAway) {
        return *sent.awaySince + staysAway;
    }
    sent.awaySince.reset();
    std::erase_if(sent.fetched, [now](auto time) { return now - time > fetchesCount; });
    if (sent.fetched.size() >= mostFetches) {
        sent.isGivenUp = true;
        isSilencing_ = false;
        tools_.will.remove(stream.serial);
        return std::nullopt;
    }
    sent.fetched.push_back(now);
    const bool hasDevice = target && targetOf(tools_.graph, targetObjectKey, *target) != nullptr;
    takeOverTargets(tools_.graph, sent.muted);
    sent.overtaken.reset();
    tell(stream, sent, hasDevice ? tools_.memory.device(stream, now) : "", now);
    return std::nullopt;
}

std::optional<MuteSink::Clock::time_point>
MuteSink::listen(const Node& stream, Sent& sent, Clock::time_point now) {
    if (!isHeard(tools_.graph, stream.serial)) {
        sent.heardSince.reset();
        return std::nullopt;
    }
    sent.heardSince = sent.heardSince.value_or(now);
    const auto limit = *sent.heardSince + movesWithin;
    isSilencing_ = isSilencing_ && now < limit;
    return now < limit ? std::optional(limit) : std::nullopt;
}

} // namespace velmora::pipewire
