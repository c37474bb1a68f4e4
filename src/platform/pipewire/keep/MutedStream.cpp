#include "platform/pipewire/keep/MutedStream.h"

#include "platform/pipewire/daemon/Connection.h"

#include <iomanip>
#include <istream>
#include <ostream>
#include <string>

namespace velmora::pipewire {
namespace {

constexpr const char* targetObjectKey = "target.object";
constexpr const char* targetNodeKey = "target.node";

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

} // namespace

MutedStream muteOf(const Graph& graph, const Node& stream, Serial sink) {
    return {.stream = stream.serial,
            .id = stream.id,
            .sink = sink,
            .targetObject = graph.metadata("default", stream.id, targetObjectKey),
            .targetNode = graph.metadata("default", stream.id, targetNodeKey)};
}

void sendToSink(Connection& connection, const MutedStream& muted) {
    constexpr const char* type = "Spa:Id";
    connection.setSessionMetadata(muted.id,
                                  targetObjectKey,
                                  MetadataValue{.type = type, .value = std::to_string(muted.sink)});
    connection.setSessionMetadata(
        muted.id, targetNodeKey, MetadataValue{.type = type, .value = "-1"});
}

void giveBack(Connection& connection, const Graph& graph, const MutedStream& muted) {
    const auto target = graph.metadata("default", muted.id, targetObjectKey);
    const bool isStillHere = graph.node(muted.stream) != nullptr && target &&
                             target->value == std::to_string(muted.sink);
    if (!isStillHere) {
        return;
    }
    // Each write changes what the session manager remembers, so the user's values come last, and
    // writing a value that is already there would not be noticed.
    connection.setSessionMetadata(muted.id, targetObjectKey, std::nullopt);
    connection.setSessionMetadata(muted.id, targetNodeKey, std::nullopt);
    if (muted.targetNode) {
        connection.setSessionMetadata(muted.id, targetNodeKey, muted.targetNode);
    }
    if (muted.targetObject) {
        connection.setSessionMetadata(muted.id, targetObjectKey, muted.targetObject);
    }
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
