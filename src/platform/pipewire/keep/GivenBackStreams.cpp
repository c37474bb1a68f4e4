#include "platform/pipewire/keep/GivenBackStreams.h"

#include "platform/pipewire/view/StreamTarget.h"

#include <algorithm>
#include <iterator>

namespace velmora::pipewire {
namespace {

using namespace std::chrono_literals;

/// By then every order has arrived, on a busy machine as well. One that changes nothing never does.
constexpr auto arrivesWithin = 1s;

} // namespace

void GivenBackStreams::add(Serial stream, std::vector<TargetOrder> orders, Clock::time_point now) {
    std::erase_if(streams_, [&](const auto& one) {
        return now - one.second.toldAt > arrivesWithin || graph_.node(one.first) == nullptr;
    });
    if (!orders.empty()) {
        streams_.insert_or_assign(stream, Orders{.awaited = std::move(orders), .toldAt = now});
    }
}

std::optional<TargetOrder>
GivenBackStreams::hear(GlobalId stream, const std::string& key, Clock::time_point now) {
    const Node* const node = graph_.nodeWithId(stream);
    const auto found = node == nullptr ? streams_.end() : streams_.find(node->serial);
    if (found == streams_.end()) {
        return std::nullopt;
    }
    Orders& orders = found->second;
    std::optional<TargetOrder> again;
    for (const char* const one : {targetObjectKey, targetNodeKey}) {
        if (key == one && now - orders.toldAt <= arrivesWithin) {
            again = hear(stream, one, orders);
        }
    }
    if (again) {
        orders.awaited.push_back(*again);
        orders.toldAt = now;
    }
    if (orders.awaited.empty()) {
        streams_.erase(found);
    }
    return again;
}

std::optional<TargetOrder>
GivenBackStreams::hear(GlobalId stream, const char* key, Orders& orders) {
    const TargetOrder heard{.key = key, .value = graph_.metadata(sessionMetadata, stream, key)};
    const auto arrived = std::ranges::find(orders.awaited, heard);
    if (arrived == orders.awaited.end()) {
        if (isChoice(graph_, stream, key)) {
            orders.chosen.insert_or_assign(key, heard);
        }
        return std::nullopt;
    }
    // They arrive in their order; what was passed over has changed nothing.
    orders.awaited.erase(orders.awaited.begin(), std::next(arrived));
    const auto replaced = orders.chosen.extract(key);
    return replaced ? std::optional(replaced.mapped()) : std::nullopt;
}

bool GivenBackStreams::isSettled(Clock::time_point now) const {
    return std::ranges::all_of(streams_, [&](const auto& one) {
        return now - one.second.toldAt > arrivesWithin || graph_.node(one.first) == nullptr;
    });
}

} // namespace velmora::pipewire
