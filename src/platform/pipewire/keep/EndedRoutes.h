// EndedRoutes.h: lets the ports of parts that have gone serve again.
#pragma once

#include "platform/pipewire/daemon/Connection.h"
#include "platform/pipewire/view/Graph.h"
#include "platform/pipewire/view/Routes.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace velmora::pipewire {

class MixNode;

/// A port must not serve another part while a link of the old one is there, or asked for: it would
/// carry the new part's sound to where the old one's went. So the node gets its ports back when the
/// daemon has seen that we let go of their links, and lists no other.
///
/// Threads: any, with the control loop's lock.
class EndedRoutes {
public:
    /// @param seen  called on the control thread when it is time to `follow` again
    EndedRoutes(Connection& connection, const Graph& graph, std::function<void()> seen)
        : connection_(connection), graph_(graph), seen_(std::move(seen)) {}

    void add(std::weak_ptr<MixNode> node, PartPorts ports);
    /// To be called after every pass over the links.
    void follow();
    /// The connection has gone, and the nodes with it.
    void clear() { ended_.clear(); }

private:
    struct Ended {
        std::weak_ptr<MixNode> node;
        PartPorts ports;
        std::uint64_t round{}; ///< 0 = links not let go of yet
    };
    [[nodiscard]] bool isOver(const Ended& ended) const;

    Connection& connection_;
    const Graph& graph_;
    std::function<void()> seen_;
    std::vector<Ended> ended_;
    std::uint64_t round_ = 0;
    std::uint64_t seenRound_ = 0;
};

} // namespace velmora::pipewire
