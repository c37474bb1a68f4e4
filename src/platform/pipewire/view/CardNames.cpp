#include "platform/pipewire/view/CardNames.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>

namespace velmora::pipewire {
namespace {

using Json = nlohmann::json;

/// More cards than anybody plugs in within a year.
constexpr std::size_t mostKnown = 256;

/// The node was given the UID of a device that has meanwhile come itself.
bool isOutdated(const Graph& graph, const Node& node) {
    return node.uid != node.name && graph.nodeNamed(node.uid) != nullptr;
}

std::string member(const Json& object, const char* key) {
    const auto found = object.find(key);
    return found != object.end() && found->is_string() ? found->get<std::string>() : std::string{};
}

} // namespace

CardNames::CardNames(std::string_view kept) {
    constexpr bool throws = false;
    const Json list = Json::parse(kept, nullptr, throws);
    for (const Json& one : list.is_array() ? list : Json::array()) {
        if (!one.is_object() || member(one, "uid").empty()) {
            continue;
        }
        known_.push_back({.uid = member(one, "uid"),
                          .place = {.card = member(one, "card"),
                                    .direction = member(one, "direction"),
                                    .kind = member(one, "kind"),
                                    .pcm = member(one, "pcm")}});
    }
}

std::string CardNames::kept() const {
    Json list = Json::array();
    for (const auto& [uid, place] : known_) {
        list.push_back({{"uid", uid},
                        {"card", place.card},
                        {"direction", place.direction},
                        {"kind", place.kind},
                        {"pcm", place.pcm}});
    }
    return list.dump(-1, ' ', false, Json::error_handler_t::replace);
}

bool CardNames::follow(Graph& graph) {
    bool isNew = false;
    std::map<Serial, std::string> uids;
    std::vector<const Node*> strangers;
    for (const auto& [serial, node] : graph.nodes()) {
        if (node.place.card.empty() || (!node.uid.empty() && !isOutdated(graph, node))) {
            continue;
        }
        const auto known = std::ranges::find(known_, node.name, &Known::uid);
        if (known == known_.end() && isTellable(node.place)) {
            strangers.push_back(&node);
            continue;
        }
        uids[serial] = node.name;
        if (known != known_.end() && known->place != node.place) {
            known->place = node.place;
            isNew = true;
        }
    }
    for (const Node* const stranger : strangers) {
        const Known* const device = deviceAt(graph, *stranger, strangers);
        uids[stranger->serial] = device == nullptr ? stranger->name : device->uid;
    }
    for (const Node* const stranger : strangers) {
        if (uids[stranger->serial] == stranger->name) {
            known_.push_back({.uid = stranger->name, .place = stranger->place});
            isNew = true;
        }
    }
    for (const auto& [serial, uid] : uids) {
        graph.setUid(serial, uid);
    }
    forgetSome(graph);
    return isNew;
}

/// Null when none is known there that is away, or more than one, or when `node` is not the only one
/// that it could be.
const CardNames::Known* CardNames::deviceAt(const Graph& graph,
                                            const Node& node,
                                            const std::vector<const Node*>& strangers) const {
    const auto isFree = [&](const Known& one) {
        return graph.nodeNamed(one.uid) == nullptr && graph.nodeWithUid(one.uid) == nullptr &&
               isSamePlace(one.place, node.place);
    };
    const auto found = std::ranges::find_if(known_, isFree);
    if (found == known_.end() || std::find_if(found + 1, known_.end(), isFree) != known_.end()) {
        return nullptr;
    }
    const auto rivals = std::ranges::count_if(
        strangers, [&](const Node* one) { return isSamePlace(found->place, one->place); });
    return rivals == 1 ? &*found : nullptr;
}

void CardNames::forgetSome(const Graph& graph) {
    std::size_t tooMany = known_.size() - std::min(known_.size(), mostKnown);
    std::erase_if(known_, [&](const Known& one) {
        const bool goes = tooMany > 0 && graph.nodeWithUid(one.uid) == nullptr;
        tooMany -= goes ? 1 : 0;
        return goes;
    });
}

} // namespace velmora::pipewire
