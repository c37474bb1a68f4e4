// NodeWatch.h: follows our latest node, and the rate that it is called at.
#pragma once

#include "platform/pipewire/daemon/Loop.h"
#include "platform/pipewire/node/MixNode.h"
#include "platform/pipewire/node/NodeLife.h"
#include "platform/pipewire/view/Graph.h"
#include "platform/pipewire/view/GraphRate.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace velmora::pipewire {

/// The node itself notices when its connection goes; that somebody has removed it may be seen in
/// the graph before. It is dead for whichever reason comes first.
///
/// Threads: any, with the control loop's lock.
class NodeWatch {
public:
    /// @param rateChanged  called on the control thread
    NodeWatch(const Loop& loop, GraphRate& rate, std::function<void()> rateChanged);

    /// From now on it is this one. Returns the name of the one before if that has died.
    [[nodiscard]] std::optional<std::string> watch(const MixNode& node);
    /// True for the node that is watched, as long as it lives.
    [[nodiscard]] bool isWatched(const std::string& node) const { return life_ && node == name_; }
    /// The connection was lost: the node is dead, also where the daemon has kept it.
    void lose();
    /// To be called after every change of the graph. Returns the name of a node that has died.
    [[nodiscard]] std::optional<std::string> follow(const Graph& graph);
    [[nodiscard]] std::uint32_t deaths() const { return deaths_; }

private:
    [[nodiscard]] std::optional<std::string> countDeath();
    void measure();

    GraphRate& rate_;
    std::function<void()> rateChanged_;
    LoopTimer timer_;
    std::string name_;
    std::shared_ptr<NodeLife> life_; // none once its death is counted
    bool isSeen_ = false;            // it was in the graph
    std::uint32_t deaths_ = 0;
};

} // namespace velmora::pipewire
