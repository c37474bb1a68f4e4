#include "platform/pipewire/MuteSink.h"

#include "platform/pipewire/MuteLayout.h"

namespace velmora::pipewire {
namespace {

constexpr const char* targetObjectKey = "target.object";
constexpr const char* targetNodeKey = "target.node";
constexpr const char* idType = "Spa:Id";

} // namespace

MuteSink::MuteSink(Connection& connection, const Graph& graph, std::string name)
    : connection_(connection), graph_(graph), name_(std::move(name)) {
}

MuteSink::~MuteSink() {
    for (const auto& [serial, stream] : muted_) {
        const auto target = graph_.metadata("default", stream.id, targetObjectKey);
        const bool isStillHere = graph_.node(serial) != nullptr && target &&
                                 target->value == std::to_string(stream.sink);
        if (isStillHere) {
            giveBack(stream);
        }
    }
}

void MuteSink::giveBack(const Muted& stream) {
    // Each write changes what the session manager remembers, so the user's values come last, and
    // writing a value that is already there would not be noticed.
    connection_.setSessionMetadata(stream.id, targetObjectKey, std::nullopt);
    connection_.setSessionMetadata(stream.id, targetNodeKey, std::nullopt);
    if (stream.targetNode) {
        connection_.setSessionMetadata(stream.id, targetNodeKey, stream.targetNode);
    }
    if (stream.targetObject) {
        connection_.setSessionMetadata(stream.id, targetObjectKey, stream.targetObject);
    }
}

void MuteSink::follow(const std::vector<Serial>& streams) {
    if (!sink_) {
        sink_ = connection_.create("adapter",
                                   PW_TYPE_INTERFACE_Node,
                                   PW_VERSION_NODE,
                                   {{"factory.name", "support.null-audio-sink"},
                                    {"media.class", "Audio/Sink/Internal"},
                                    {"node.name", name_},
                                    {"node.description", "Velmora Mute"},
                                    {"audio.position", targetLayout(graph_, streams)},
                                    {"node.virtual", "true"},
                                    {"priority.session", "0"},
                                    {"priority.driver", "0"},
                                    // WirePlumber 0.4.13 crashes (suspend-node.lua) when a sink
                                    // goes while it is waiting to be suspended.
                                    {"session.suspend-timeout-seconds", "0"},
                                    // Keeps its volume out of the session manager's files.
                                    {"device.routes", "1"}});
    }
    std::erase_if(muted_, [&](const auto& one) { return graph_.node(one.first) == nullptr; });
    const Node* const sink = graph_.nodeNamed(name_);
    if (sink == nullptr || sink->ports.empty()) {
        return; // comes with a later change of the graph
    }
    for (const Serial serial : streams) {
        if (const Node* const stream = graph_.node(serial); stream != nullptr) {
            send(*stream, sink->serial);
        }
    }
}

void MuteSink::send(const Node& stream, Serial sink) {
    const bool isManaged = stream.mediaClass == "Stream/Output/Audio";
    if (!isManaged || muted_.contains(stream.serial)) {
        return;
    }
    muted_[stream.serial] = {.id = stream.id,
                             .sink = sink,
                             .targetObject = graph_.metadata("default", stream.id, targetObjectKey),
                             .targetNode = graph_.metadata("default", stream.id, targetNodeKey)};
    connection_.setSessionMetadata(
        stream.id, targetObjectKey, MetadataValue{.type = idType, .value = std::to_string(sink)});
    connection_.setSessionMetadata(
        stream.id, targetNodeKey, MetadataValue{.type = idType, .value = "-1"});
}

} // namespace velmora::pipewire
