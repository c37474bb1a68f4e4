// AudioGraph.h: what a session's sound server holds at one moment, as `pw-dump` tells it.
#pragma once

#include "support/ChildProcess.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::support {

struct GraphNode {
    std::uint32_t id{};     ///< given to the next object once this one has gone
    std::uint64_t serial{}; ///< never given twice
    std::string name;
    std::string mediaClass;
    std::string state; ///< "suspended", "idle", "running", ...
    int inputPorts{};
    int outputPorts{};
};

/// A link between two ports, by the `node.name` of their nodes.
struct GraphLink {
    std::uint32_t id{};
    std::string from;
    std::string to;
};

class AudioGraph {
public:
    /// Empty when the server does not answer.
    static AudioGraph read(const Environment& session);

    [[nodiscard]] const std::vector<GraphNode>& nodes() const { return nodes_; }
    [[nodiscard]] const GraphNode* node(std::string_view name) const;
    [[nodiscard]] const std::vector<GraphLink>& links() const { return links_; }
    /// True when any output port of `from` is linked to any input port of `to`.
    [[nodiscard]] bool linked(std::string_view from, std::string_view to) const;
    /// node.name of the default sink, or none while the session manager has not chosen.
    [[nodiscard]] const std::optional<std::string>& defaultSink() const { return defaultSink_; }

private:
    /// None of what is not one list.
    static std::optional<AudioGraph> parse(const std::string& text);

    std::vector<GraphNode> nodes_;
    std::vector<GraphLink> links_;
    std::optional<std::string> defaultSink_;
};

} // namespace velmora::support
