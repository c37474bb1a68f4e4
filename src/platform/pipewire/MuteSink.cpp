#include "platform/pipewire/MuteSink.h"

#include "platform/pipewire/Devices.h"

#include <algorithm>

namespace velmora::pipewire {
namespace {

constexpr const char* targetObjectKey = "target.object";
constexpr const char* targetNodeKey = "target.node";
constexpr const char* idType = "Spa:Id";

const Node* sinkOf(const Graph& graph, Serial stream) {
    for (const auto& [serial, link] : graph.links()) {
        const Node* const sink = graph.node(link.inputNode);
        if (link.outputNode == stream && sink != nullptr && sink->mediaClass == "Audio/Sink") {
            return sink;
        }
    }
    return nullptr;
}

} // namespace

std::string targetLayout(const Graph& graph, const std::vector<Serial>& streams) {
    const Node* sink = graph.nodeNamed(graph.defaultSinkName().value_or(""));
    for (const Serial stream : streams) {
        if (const Node* const target = sinkOf(graph, stream)) {
            sink = target;
            break;
        }
    }
    std::string positions;
    for (const Port& port : sink == nullptr ? std::vector<Port>{} : playbackPorts(*sink)) {
        positions += (positions.empty() ? "" : ",") + port.channel;
    }
    return "[" + (positions.empty() ? "FL,FR" : positions) + "]";
}

MuteSink::MuteSink(Connection& connection, std::string name)
    : connection_(connection), name_(std::move(name)) {
}

MuteSink::~MuteSink() {
    for (const auto& [serial, stream] : muted_) {
        // Each write changes what the session manager remembers, so the user's values come last,
        // and writing a value that is already there would not be noticed.
        connection_.setSessionMetadata(stream.id, targetObjectKey, std::nullopt);
        connection_.setSessionMetadata(stream.id, targetNodeKey, std::nullopt);
        if (stream.targetNode) {
            connection_.setSessionMetadata(stream.id, targetNodeKey, stream.targetNode);
        }
        if (stream.targetObject) {
            connection_.setSessionMetadata(stream.id, targetObjectKey, stream.targetObject);
        }
    }
}

void MuteSink::follow(const Graph& graph, const std::vector<Serial>& streams) {
    if (!sink_) {
        sink_ = connection_.create("adapter",
                                   PW_TYPE_INTERFACE_Node,
                                   PW_VERSION_NODE,
                                   {{"factory.name", "support.null-audio-sink"},
                                    {"media.class", "Audio/Sink/Internal"},
                                    {"node.name", name_},
                                    {"node.description", "Velmora Mute"},
                                    {"audio.position", targetLayout(graph, streams)},
                                    {"node.virtual", "true"},
                                    {"priority.session", "0"},
                                    {"priority.driver", "0"},
                                    // Keeps its volume out of the session manager's files.
                                    {"device.routes", "1"}});
    }
    std::erase_if(muted_, [&](const auto& one) { return graph.node(one.first) == nullptr; });
    const Node* const sink = graph.nodeNamed(name_);
    if (sink == nullptr || sink->ports.empty()) {
        return; // comes with a later change of the graph
    }
    for (const Serial serial : streams) {
        if (const Node* const stream = graph.node(serial); stream != nullptr) {
            send(graph, *stream, sink->serial);
        }
    }
}

void MuteSink::send(const Graph& graph, const Node& stream, Serial sink) {
    const bool isManaged = stream.mediaClass == "Stream/Output/Audio";
    if (!isManaged || muted_.contains(stream.serial)) {
        return;
    }
    muted_[stream.serial] = {.id = stream.id,
                             .targetObject = graph.metadata("default", stream.id, targetObjectKey),
                             .targetNode = graph.metadata("default", stream.id, targetNodeKey)};
    connection_.setSessionMetadata(
        stream.id, targetObjectKey, MetadataValue{.type = idType, .value = std::to_string(sink)});
    connection_.setSessionMetadata(
        stream.id, targetNodeKey, MetadataValue{.type = idType, .value = "-1"});
}

} // namespace velmora::pipewire
