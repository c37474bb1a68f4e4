#include "platform/pipewire/keep/RouteWriter.h"

#include "platform/pipewire/view/StreamTarget.h"

#include <algorithm>
#include <array>

namespace velmora::pipewire {
namespace {

using namespace std::chrono_literals;

/// A session manager that does not know the stand-in yet heeds nothing that it is told of it, and
/// does not say when it does: 4 ms later on an idle machine.
constexpr std::array<std::chrono::milliseconds, 5> tellAfter = {20ms, 60ms, 200ms, 500ms, 1000ms};

/// A namesake is told once in its life. From then on, until it goes, the session manager sends new
/// streams of the kind to it, and ends those that may not be moved when it cannot. So it stays no
/// longer than it must, and what the session manager has written afterwards says whether another
/// one is needed.
constexpr std::array<std::chrono::milliseconds, 3> tellNamesakeAfter = {200ms, 500ms, 2000ms};

/// How long the session manager may take to tell everybody of a new target.
constexpr auto echoedWithin = 500ms;

/// One that acts later has no use for what it is told of a stream that has gone by then. It ends no
/// streams on the namesake's account.
constexpr auto doneWithin = 200ms;

/// It writes its file a second after a change.
constexpr auto writtenSoonestAfter = 1300ms;

/// How long the daemon may take to make the stand-in.
constexpr auto madeWithin = 2s;

} // namespace

void RouteWriter::write(const RouteKey& key, const std::string& device) {
    standIns_.insert_or_assign(key, standInFor(key, device));
}

RouteWriter::StandIn RouteWriter::standInFor(const RouteKey& key, const std::string& device) {
    const bool isNamesake = !device.empty() && deviceNamed(graph_, device) == nullptr;
    auto node = connection_.create("spa-node-factory",
                                   PW_TYPE_INTERFACE_Node,
                                   PW_VERSION_NODE,
                                   {{"factory.name", "support.node.driver"},
                                    {"media.class", "Stream/Output/Audio"},
                                    // What it is sent to is remembered by its name.
                                    {"node.name", isNamesake ? device : newName_()},
                                    {key.property, key.value},
                                    {"node.autoconnect", "false"},
                                    {"node.virtual", "true"},
                                    {"priority.driver", "0"}});
    return {.node = std::move(node), .device = device, .isNamesake = isNamesake};
}

std::optional<RouteWriter::Clock::time_point> RouteWriter::follow(Clock::time_point now) {
    std::optional<Clock::time_point> comeAgain;
    for (auto one = standIns_.begin(); one != standIns_.end();) {
        auto& [key, standIn] = *one;
        const auto choice = memory_.lastChoice(key, now);
        const bool isOutdated = choice && *choice != standIn.device;
        const auto due = isOutdated ? std::nullopt : follow(key, standIn, now);
        if (due) {
            comeAgain = std::min(comeAgain.value_or(*due), *due);
            ++one;
        } else {
            done_(key);
            one = standIns_.erase(one);
        }
    }
    return comeAgain;
}

std::optional<RouteWriter::Clock::time_point>
RouteWriter::follow(const RouteKey& key, StandIn& standIn, Clock::time_point now) {
    if (standIn.leftAt) {
        return followLeft(key, standIn, now);
    }
    const GlobalId id = standIn.node ? pw_proxy_get_bound_id(standIn.node.get()) : SPA_ID_INVALID;
    const Node* const node = id == SPA_ID_INVALID ? nullptr : graph_.nodeWithId(id);
    if (!standIn.since) {
        standIn.since = now;
    }
    if (node == nullptr) {
        // Not made yet, or removed by somebody.
        const auto end = *standIn.since + madeWithin;
        const bool mayCome = standIn.node && standIn.told == 0 && now < end;
        return mayCome ? std::optional(end) : std::nullopt;
    }
    if (standIn.isNamesake && standIn.told > 0) {
        return followTold(standIn, *node, now);
    }
    if (!standIn.isNamesake && !standIn.device.empty() &&
        deviceNamed(graph_, standIn.device) == nullptr) {
        return leave(standIn, now); // it has gone; what was told before may have been heeded
    }
    const auto nextTell = [&] {
        return *standIn.since + (standIn.isNamesake ? tellNamesakeAfter.at(standIn.attempts - 1)
                                                    : tellAfter.at(standIn.told));
    };
    if (now >= nextTell()) {
        tell(*node, standIn, now);
        if (standIn.isNamesake) {
            return followTold(standIn, *node, now);
        }
    }
    return standIn.told < tellAfter.size() ? std::optional(nextTell()) : std::nullopt;
}

std::optional<RouteWriter::Clock::time_point>
RouteWriter::followTold(StandIn& namesake, const Node& node, Clock::time_point now) {
    const auto end = *namesake.toldAt + echoedWithin;
    if (now < end && !graph_.metadata(sessionMetadata, node.id, targetNodeKey)) {
        return end;
    }
    const auto done = *namesake.toldAt + doneWithin;
    if (now < done && memory_.isManagerQueueing()) {
        return done;
    }
    return leave(namesake, now);
}

RouteWriter::Clock::time_point RouteWriter::leave(StandIn& standIn, Clock::time_point now) {
    standIn.node.reset();
    standIn.leftAt = now;
    return now + writtenSoonestAfter;
}

std::optional<RouteWriter::Clock::time_point>
RouteWriter::followLeft(const RouteKey& key, StandIn& standIn, Clock::time_point now) {
    const auto soonest = *standIn.leftAt + writtenSoonestAfter;
    const auto latest = *standIn.leftAt + RouteMemory::writtenWithin;
    if (now < soonest) {
        return soonest;
    }
    const auto written = memory_.written(key);
    if (!written || *written == standIn.device) {
        return std::nullopt;
    }
    if (now < latest) {
        return latest;
    }
    if (standIn.attempts >= tellNamesakeAfter.size()) {
        return std::nullopt;
    }
    const std::size_t attempts = standIn.attempts + 1;
    standIn = standInFor(key, standIn.device);
    standIn.attempts = attempts;
    return now + madeWithin;
}

void RouteWriter::giveUp() {
    for (const auto& [key, standIn] : standIns_) {
        done_(key);
    }
    clear();
}

void RouteWriter::tell(const Node& node, StandIn& standIn, Clock::time_point now) {
    const Node* const target = standIn.isNamesake ? &node : deviceNamed(graph_, standIn.device);
    const std::string id = target == nullptr ? "-1" : std::to_string(target->id);
    // What it was told before would not be noticed; the type is heeded by nobody.
    connection_.setSessionMetadata(
        node.id,
        targetNodeKey,
        MetadataValue{.type = standIn.told % 2 == 0 ? "Spa:Id" : "Spa:Int", .value = id});
    ++standIn.told;
    standIn.toldAt = standIn.toldAt.value_or(now);
}

} // namespace velmora::pipewire
