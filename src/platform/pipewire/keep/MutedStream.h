// MutedStream.h: a stream that was sent to a silent sink of ours, and what it had before.
#pragma once

#include "platform/pipewire/view/Graph.h"

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace velmora::pipewire {

class Connection;

struct MutedStream {
    Serial stream{};
    GlobalId id{};
    Serial sink{};
    std::optional<MetadataValue> targetObject{}; ///< as the user had set it
    std::optional<MetadataValue> targetNode{};

    bool operator==(const MutedStream&) const = default;
};

// Threads: any, with the control loop's lock.

/// What the user has set for the stream, which is to go to `sink`.
[[nodiscard]] MutedStream muteOf(const Graph& graph, const Node& stream, Serial sink);

/// Sends the stream to our sink.
///
/// The session manager also remembers, by the kind of application, where streams were sent to, and
/// would send others of the kind there; the next thing that it is told is `stored`, the device that
/// it had remembered, as a second target that is not in force while there is the first.
/// @param stored  `node.name`; empty = none. One that is not there cannot be told in this way.
void sendToSink(Connection& connection,
                const Graph& graph,
                const MutedStream& muted,
                const std::string& stored);

/// What the stream was given under `key` at this moment is somebody's choice, and no order of ours.
[[nodiscard]] bool isChoice(const Graph& graph, GlobalId stream, const char* key);

/// Takes over what the stream was given under `key` at this moment, if that is somebody's choice
/// and another one than before; returns its device then, empty for a choice of none.
[[nodiscard]] std::optional<std::string>
takeOverChoice(const Graph& graph, MutedStream& muted, const char* key);

/// Takes over what somebody else has set for the stream since we sent it away.
void takeOverTargets(const Graph& graph, MutedStream& muted);

/// One of a stream's keys, and what it is to be; no value = none.
struct TargetOrder {
    const char* key{}; ///< `targetObjectKey` or `targetNodeKey`
    std::optional<MetadataValue> value{};

    bool operator==(const TargetOrder&) const = default;
};

struct GivenBack {
    std::vector<TargetOrder> orders{}; ///< what was told, in that order; none when nothing was
    bool isRemembered{true};           ///< the session manager remembers `stored` after this
};

/// Gives the stream back the target that it had, unless it has gone or somebody has sent it
/// elsewhere since.
/// @param stored           as above
/// @param isOrderUnderWay  what is seen of its target is from before our order, which comes yet
[[nodiscard]] GivenBack giveBack(Connection& connection,
                                 const Graph& graph,
                                 MutedStream muted,
                                 const std::string& stored,
                                 bool isOrderUnderWay);

/// One entry of words, for another process of ours to read; the state of `in` tells whether all of
/// it came.
std::ostream& operator<<(std::ostream& out, const MutedStream& muted);
std::istream& operator>>(std::istream& in, MutedStream& muted);

} // namespace velmora::pipewire
