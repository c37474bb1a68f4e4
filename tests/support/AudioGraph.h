// AudioGraph.h: what a session's sound server holds at one moment, as `pw-dump` tells it.
#pragma once

#include "support/ChildProcess.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::support {

struct GraphNode {
    std::uint32_t id{};
    std::string name;
    std::string mediaClass;
    std::string state; ///< "suspended", "idle", "running", ...
    int inputPorts{};
    int outputPorts{};
};

class AudioGraph {
public:
    /// Empty when the server does not answer.
    static AudioGraph read(const Environment& session);

    [[nodiscard]] const std::vector<GraphNode>& nodes() const { return nodes_; }
    [[nodiscard]] const GraphNode* node(std::string_view name) const;
    /// True when any output port of `from` is linked to any input port of `to`.
    [[nodiscard]] bool linked(std::string_view from, std::string_view to) const;
    /// node.name of the default sink, or none while the session manager has not chosen.
    [[nodiscard]] const std::optional<std::string>& defaultSink() const { return defaultSink_; }

private:
    std::vector<GraphNode> nodes_;
    std::multimap<std::uint32_t, std::uint32_t> links_; // output node id -> input node id
    std::optional<std::string> defaultSink_;
};

} // namespace velmora::support
