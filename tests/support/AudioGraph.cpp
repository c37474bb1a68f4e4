#include "support/AudioGraph.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace velmora::support {
namespace {

using nlohmann::json;

GraphNode toNode(const json& object) {
    const json& info = object["info"];
    const json properties = info.value("props", json::object());
    return {
        .id = object.value("id", 0U),
        .name = properties.value("node.name", ""),
        .mediaClass = properties.value("media.class", ""),
        .state = info.value("state", ""),
        .inputPorts = info.value("n-input-ports", 0),
        .outputPorts = info.value("n-output-ports", 0),
    };
}

std::optional<std::string> toDefaultSink(const json& metadata) {
    for (const json& entry : metadata.value("metadata", json::array())) {
        if (entry.value("key", "") == "default.audio.sink") {
            const json& value = entry["value"];
            return value.is_object() ? value.value("name", "") : std::string();
        }
    }
    return std::nullopt;
}

} // namespace

AudioGraph AudioGraph::read(const Environment& session) {
    std::string text;
    try {
        text = runToEnd({"pw-dump"}, session);
    } catch (const std::runtime_error&) {
        return {};
    }
    AudioGraph graph;
    const json dump = json::parse(text, nullptr, /*allow_exceptions=*/false);
    if (!dump.is_array()) {
        return graph;
    }
    for (const json& object : dump) {
        const std::string type = object.value("type", "");
        const bool described = object.contains("info") && object["info"].is_object();
        if (type == "PipeWire:Interface:Node" && described) {
            graph.nodes_.push_back(toNode(object));
        } else if (type == "PipeWire:Interface:Link" && described) {
            const json& info = object["info"];
            graph.links_.emplace(info.value("output-node-id", 0U), info.value("input-node-id", 0U));
        } else if (type == "PipeWire:Interface:Metadata") {
            if (auto sink = toDefaultSink(object)) {
                graph.defaultSink_ = std::move(sink);
            }
        }
    }
    return graph;
}

const GraphNode* AudioGraph::node(std::string_view name) const {
    const auto found = std::ranges::find(nodes_, name, &GraphNode::name);
    return found == nodes_.end() ? nullptr : &*found;
}

bool AudioGraph::linked(std::string_view from, std::string_view to) const {
    const GraphNode* source = node(from);
    const GraphNode* target = node(to);
    if (source == nullptr || target == nullptr) {
        return false;
    }
    const auto [first, last] = links_.equal_range(source->id);
    return std::any_of(first, last, [&](const auto& link) { return link.second == target->id; });
}

} // namespace velmora::support
