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

/// How long the daemon may take to make the stand-in.
constexpr auto madeWithin = 2s;

} // namespace

void RouteWriter::write(const RouteKey& key, const std::string& device) {
    const bool isThere = device.empty() || graph_.nodeNamed(device) != nullptr;
    auto node = connection_.create("spa-node-factory",
                                   PW_TYPE_INTERFACE_Node,
                                   PW_VERSION_NODE,
                                   {{"factory.name", "support.node.driver"},
                                    {"media.class", "Stream/Output/Audio"},
                                    // What it is sent to is remembered by its name. When that is
                                    // not there, it is sent to itself.
                                    {"node.name", isThere ? newName_() : device},
                                    {key.property, key.value},
                                    {"node.autoconnect", "false"},
                                    {"node.virtual", "true"},
                                    {"priority.driver", "0"}});
    standIns_.insert_or_assign(
        key, StandIn{.node = std::move(node), .device = device, .since = {}, .told = 0});
}

std::optional<RouteWriter::Clock::time_point> RouteWriter::follow(Clock::time_point now) {
    std::optional<Clock::time_point> comeAgain;
    for (auto one = standIns_.begin(); one != standIns_.end();) {
        const auto choice = memory_.lastChoice(one->first, now);
        const bool isOutdated = choice && *choice != one->second.device;
        const auto due = isOutdated ? std::nullopt : follow(one->second, now);
        if (due) {
            comeAgain = std::min(comeAgain.value_or(*due), *due);
            ++one;
        } else {
            done_(one->first);
            one = standIns_.erase(one);
        }
    }
    return comeAgain;
}

std::optional<RouteWriter::Clock::time_point> RouteWriter::follow(StandIn& standIn,
                                                                  Clock::time_point now) {
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
    if (now >= *standIn.since + tellAfter.at(standIn.told)) {
        tell(*node, standIn.device, standIn.told++);
    }
    return standIn.told < tellAfter.size()
               ? std::optional(*standIn.since + tellAfter.at(standIn.told))
               : std::nullopt;
}

void RouteWriter::giveUp() {
    for (const auto& [key, standIn] : standIns_) {
        done_(key);
    }
    clear();
}

void RouteWriter::tell(const Node& standIn, const std::string& device, std::size_t told) {
    const Node* const target = graph_.nodeNamed(device);
    const std::string id = target == nullptr ? "-1" : std::to_string(target->id);
    // What it was told before would not be noticed; the type is heeded by nobody.
    connection_.setSessionMetadata(
        standIn.id,
        targetNodeKey,
        MetadataValue{.type = told % 2 == 0 ? "Spa:Id" : "Spa:Int", .value = id});
}

} // namespace velmora::pipewire
