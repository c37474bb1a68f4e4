#include "support/AudioGraph.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>

namespace velmora::support {
namespace {

using nlohmann::json;

GraphNode toNode(const json& object) {
    const json& info = object["info"];
    const json properties = info.value("props", json::object());
    return {
        .id = object.value("id", 0U),
        .serial = properties.value("object.serial", std::uint64_t{0}),
        .name = properties.value("node.name", ""),
        .mediaClass = properties.value("media.class", ""),
        .state = info.value("state", ""),
        .inputPorts = info.value("n-input-ports", 0),
        .outputPorts = info.value("n-output-ports", 0),
    };
}

GraphLink toLink(const json& object, const std::map<std::uint32_t, std::string>& names) {
    const json& info = object["info"];
    const auto name = [&](const char* side) {
        const auto found = names.find(info.value(side, 0U));
        return found == names.end() ? std::string() : found->second;
    };
    return {
        .id = object.value("id", 0U), .from = name("output-node-id"), .to = name("input-node-id")};
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
    // Of an object that goes while the list is made, pw-dump (0.3.65) tells by one more list.
    constexpr int attempts = 20;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        std::string text;
        try {
            text = runToEnd({"pw-dump"}, session);
        } catch (const std::runtime_error&) {
            return {};
        }
        if (auto graph = parse(text)) {
            return *std::move(graph);
        }
    }
    return {};
}

std::optional<AudioGraph> AudioGraph::parse(const std::string& text) {
    AudioGraph graph;
    const json dump = json::parse(text, nullptr, /*allow_exceptions=*/false);
    if (!dump.is_array()) {
        return std::nullopt;
    }
    std::map<std::uint32_t, std::string> names;
    std::vector<json> links;
    for (const json& object : dump) {
        const std::string type = object.value("type", "");
        const bool described = object.contains("info") && object["info"].is_object();
        if (type == "PipeWire:Interface:Node" && described) {
            graph.nodes_.push_back(toNode(object));
            names[graph.nodes_.back().id] = graph.nodes_.back().name;
        } else if (type == "PipeWire:Interface:Link" && described) {
            links.push_back(object);
        } else if (type == "PipeWire:Interface:Metadata") {
            if (auto sink = toDefaultSink(object)) {
                graph.defaultSink_ = std::move(sink);
            }
        }
    }
    for (const json& link : links) { // they may be told before their nodes
        graph.links_.push_back(toLink(link, names));
    }
    return graph;
}

const GraphNode* AudioGraph::node(std::string_view name) const {
    const auto found = std::ranges::find(nodes_, name, &GraphNode::name);
    return found == nodes_.end() ? nullptr : &*found;
}

bool AudioGraph::linked(std::string_view from, std::string_view to) const {
    return std::ranges::any_of(
        links_, [&](const GraphLink& link) { return link.from == from && link.to == to; });
}

} // namespace velmora::support
