#include "platform/pipewire/keep/MutedStream.h"

#include "platform/pipewire/daemon/Connection.h"
#include "platform/pipewire/view/StreamTarget.h"

#include <iomanip>
#include <istream>
#include <ostream>
#include <string>

namespace velmora::pipewire {
namespace {

/// The type that users' own targets have. Ours has another one: nobody heeds it, a value that is
/// set once more is told again, and ours can be told from theirs.
constexpr const char* usualType = "Spa:Id";
constexpr const char* ownType = "Spa:Int";

/// The session manager's word for the default output.
constexpr const char* noTarget = "-1";

void write(std::ostream& out, const std::optional<MetadataValue>& value) {
    out << ' ' << value.has_value();
    if (value) {
        out << ' ' << std::quoted(value->type) << ' ' << std::quoted(value->value);
    }
}

void read(std::istream& in, std::optional<MetadataValue>& value) {
    bool isThere = false;
    in >> isThere;
    value.reset();
    if (isThere) {
        in >> std::quoted(value.emplace().type) >> std::quoted(value->value);
    }
}

using Target = std::optional<MetadataValue>;

Target targetObjectOf(const Graph& graph, GlobalId stream) {
    return graph.metadata(sessionMetadata, stream, targetObjectKey);
}

/// None when it is what `sendToSink` has written, now or for another mute before.
Target targetNodeOf(const Graph& graph, GlobalId stream) {
    const Target value = graph.metadata(sessionMetadata, stream, targetNodeKey);
    return value && value->type == ownType ? std::nullopt : value;
}

Target valueOf(const Graph& graph, GlobalId stream, const char* key) {
    return key == targetObjectKey ? targetObjectOf(graph, stream) : targetNodeOf(graph, stream);
}

std::string deviceOf(const Graph& graph, const char* key, const Target& value) {
    const Node* const device = value ? targetOf(graph, key, *value) : nullptr;
    return device == nullptr ? std::string{} : device->name;
}

} // namespace

MutedStream muteOf(const Graph& graph, const Node& stream, Serial sink) {
    return {.stream = stream.serial,
            .id = stream.id,
            .sink = sink,
            .targetObject = targetObjectOf(graph, stream.id),
            .targetNode = targetNodeOf(graph, stream.id)};
}

void sendToSink(Connection& connection,
                const Graph& graph,
                const MutedStream& muted,
                const std::string& stored) {
    const Node* const device = deviceNamed(graph, stored);
    connection.setSessionMetadata(
        muted.id,
        targetObjectKey,
        MetadataValue{.type = usualType, .value = std::to_string(muted.sink)});
    // What is there from before would not be noticed, hence something that is no node first.
    for (const std::string& value :
         {std::string("0"), device == nullptr ? noTarget : std::to_string(device->id)}) {
        connection.setSessionMetadata(
            muted.id, targetNodeKey, MetadataValue{.type = ownType, .value = value});
    }
}

bool isChoice(const Graph& graph, GlobalId stream, const char* key) {
    const Target value = valueOf(graph, stream, key);
    if (!value) {
        return key == targetObjectKey;
    }
    // What names nothing may be a sink of ours that has gone.
    const Node* const device = targetOf(graph, key, *value);
    return device == nullptr ? value->value == noTarget : !isMuteSink(*device);
}

std::optional<std::string> takeOverChoice(const Graph& graph, MutedStream& muted, const char* key) {
    const Target value = valueOf(graph, muted.id, key);
    Target& known = key == targetObjectKey ? muted.targetObject : muted.targetNode;
    if (!isChoice(graph, muted.id, key) || known == value) {
        return std::nullopt;
    }
    known = value;
    return deviceOf(graph, key, value);
}

void takeOverTargets(const Graph& graph, MutedStream& muted) {
    const Target object = targetObjectOf(graph, muted.id);
    if (!object || object->value != std::to_string(muted.sink)) {
        muted.targetObject = object;
    }
    if (const Target node = targetNodeOf(graph, muted.id)) {
        muted.targetNode = node;
    }
}

GivenBack giveBack(Connection& connection,
                   const Graph& graph,
                   MutedStream muted,
                   const std::string& stored,
                   bool isOrderUnderWay) {
    const Node* const stream = graph.node(muted.stream);
    const Target object = targetObjectOf(graph, muted.id);
    const bool isOurs = object && object->value == std::to_string(muted.sink);
    if (stream == nullptr || (!isOurs && !isOrderUnderWay)) {
        return {};
    }
    takeOverTargets(graph, muted);
    // The one that is in force goes last: until then the stream stays where it is.
    GivenBack given{
        .orders = {{targetNodeKey, muted.targetNode}, {targetObjectKey, muted.targetObject}}};
    // Of all this, the session manager remembers the last.
    if (deviceOf(graph, targetObjectKey, muted.targetObject) != stored) {
        if (muted.targetNode && deviceOf(graph, targetNodeKey, muted.targetNode) == stored) {
            given.orders.push_back(
                {targetNodeKey, MetadataValue{.type = ownType, .value = muted.targetNode->value}});
            given.orders.push_back({targetNodeKey, muted.targetNode});
        } else {
            given.isRemembered = stream->routeKey.isEmpty();
        }
    }
    for (const TargetOrder& order : given.orders) {
        connection.setSessionMetadata(muted.id, order.key, order.value);
    }
    return given;
}

std::ostream& operator<<(std::ostream& out, const MutedStream& muted) {
    out << muted.stream << ' ' << muted.id << ' ' << muted.sink;
    write(out, muted.targetObject);
    write(out, muted.targetNode);
    return out;
}

std::istream& operator>>(std::istream& in, MutedStream& muted) {
    in >> muted.stream >> muted.id >> muted.sink;
    read(in, muted.targetObject);
    read(in, muted.targetNode);
    return in;
}

} // namespace velmora::pipewire
