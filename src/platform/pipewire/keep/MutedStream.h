// MutedStream.h: a stream that was sent to a silent sink of ours, and what it had before.
#pragma once

#include "platform/pipewire/view/Graph.h"

#include <iosfwd>
#include <optional>

namespace velmora::pipewire {

class Connection;

struct MutedStream {
    Serial stream{};
    GlobalId id{};
    Serial sink{};
    std::optional<MetadataValue> targetObject; ///< as the user had set it
    std::optional<MetadataValue> targetNode;

    bool operator==(const MutedStream&) const = default;
};

// Threads: any, with the control loop's lock.

/// Sends the stream to our sink. The session manager also remembers, by the kind of application,
/// where streams were sent to, and would send other programs there; it is told at once that there
/// is nothing to remember (target.node = -1, WirePlumber 0.4.13), while the target that it was
/// given for this very stream stays in force.
void sendToSink(Connection& connection, const MutedStream& muted);
/// Gives the stream back the target that it had, unless it has gone or the user has sent it
/// elsewhere since.
void giveBack(Connection& connection, const Graph& graph, const MutedStream& muted);

/// What the user has set for the stream, which is to go to `sink`.
[[nodiscard]] MutedStream muteOf(const Graph& graph, const Node& stream, Serial sink);

/// One entry of words, for another process of ours to read; the state of `in` tells whether all of
/// it came.
std::ostream& operator<<(std::ostream& out, const MutedStream& muted);
std::istream& operator>>(std::istream& in, MutedStream& muted);

} // namespace velmora::pipewire
