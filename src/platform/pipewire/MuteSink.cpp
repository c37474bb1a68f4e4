#include "platform/pipewire/MuteSink.h"

#include "platform/pipewire/MuteLayout.h"

namespace velmora::pipewire {
namespace {

constexpr const char* targetObjectKey = "target.object";
constexpr const char* targetNodeKey = "target.node";
constexpr const char* idType = "Spa:Id";

} // namespace

MuteSink::MuteSink(Connection& connection, const Graph& graph, std::function<std::string()> newName)
    : connection_(connection), graph_(graph), newName_(std::move(newName)) {
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
    std::erase_if(muted_, [&](const auto& one) { return graph_.node(one.first) == nullptr; });
    const Node* const sink = sink_ ? graph_.nodeNamed(name_) : nullptr;
    if (!sink_ || (isSinkSeen_ && sink == nullptr)) {
        makeSink(streams);
        return;
    }
    isSinkSeen_ = sink != nullptr;
    if (sink == nullptr || sink->ports.empty()) {
        return; // comes with a later change of the graph
    }
    for (const Serial serial : streams) {
        if (const Node* const stream = graph_.node(serial); stream != nullptr) {
            send(*stream, sink->serial);
        }
    }
}

void MuteSink::makeSink(const std::vector<Serial>& streams) {
    name_ = newName_();
    isSinkSeen_ = false;
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

void MuteSink::send(const Node& stream, Serial sink) {
    if (stream.mediaClass != "Stream/Output/Audio") {
        return; // the session manager does not move it
    }
    const auto known = muted_.find(stream.serial);
    if (known == muted_.end()) {
        muted_[stream.serial] = {
            .id = stream.id,
            .sink = sink,
            .targetObject = graph_.metadata("default", stream.id, targetObjectKey),
            .targetNode = graph_.metadata("default", stream.id, targetNodeKey)};
    } else if (known->second.sink != sink) {
        known->second.sink = sink; // what it names now is our own sink before this one
    } else {
        return;
    }
    connection_.setSessionMetadata(
        stream.id, targetObjectKey, MetadataValue{.type = idType, .value = std::to_string(sink)});
    connection_.setSessionMetadata(
        stream.id, targetNodeKey, MetadataValue{.type = idType, .value = "-1"});
}

} // namespace velmora::pipewire
