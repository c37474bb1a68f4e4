// MutedStream.h: a stream that was sent to a silent sink of ours, and what it had before.
#pragma once

#include "platform/pipewire/view/Graph.h"

#include <iosfwd>
#include <optional>

namespace velmora::pipewire {

class Connection;

inline constexpr const char* targetObjectKey = "target.object";
inline constexpr const char* targetNodeKey = "target.node";

struct MutedStream {
    Serial stream{};
    GlobalId id{};
    Serial sink{};
    std::optional<MetadataValue> targetObject; ///< as the user had set it
    std::optional<MetadataValue> targetNode;

    bool operator==(const MutedStream&) const = default;
};

/// Gives the stream back the target that it had, unless it has gone or the user has sent it
/// elsewhere since. Threads: needs the control loop's lock.
void giveBack(Connection& connection, const Graph& graph, const MutedStream& muted);

/// One entry of words, for another process of ours to read; the state of `in` tells whether all of
/// it came.
std::ostream& operator<<(std::ostream& out, const MutedStream& muted);
std::istream& operator>>(std::istream& in, MutedStream& muted);

} // namespace velmora::pipewire
