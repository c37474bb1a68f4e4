#include "platform/pipewire/keep/EndedRoutes.h"

#include "platform/pipewire/node/MixNode.h"

#include <algorithm>
#include <utility>

namespace velmora::pipewire {

void EndedRoutes::add(std::weak_ptr<MixNode> node, PartPorts ports) {
    ended_.push_back({.node = std::move(node), .ports = std::move(ports), .round = 0});
}

void EndedRoutes::follow() {
    if (std::ranges::find(ended_, std::uint64_t{0}, &Ended::round) != ended_.end()) {
        ++round_;
        for (Ended& one : ended_) {
            one.round = one.round == 0 ? round_ : one.round;
        }
        connection_.whenSeen([this, round = round_] {
            seenRound_ = round;
            seen_();
        });
    }
    std::erase_if(ended_, [this](const Ended& one) { return isOver(one); });
}

bool EndedRoutes::isOver(const Ended& ended) const {
    if (ended.round > seenRound_ || areLinked(graph_, ended.ports)) {
        return false;
    }
    if (const auto node = ended.node.lock()) {
        node->portsAreClear(ended.ports.names);
    }
    return true;
}

} // namespace velmora::pipewire
