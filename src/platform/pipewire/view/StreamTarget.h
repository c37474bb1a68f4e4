// StreamTarget.h: where the session manager was told to send a stream.
#pragma once

#include "platform/pipewire/view/Graph.h"

namespace velmora::pipewire {

/// The metadata object that the session manager obeys, and the two keys about a stream that name
/// its target: by serial, which wins, and by global id.
inline constexpr char sessionMetadata[] = "default";
inline constexpr char targetObjectKey[] = "target.object";
inline constexpr char targetNodeKey[] = "target.node";

/// A stream that the session manager knows as one that plays.
[[nodiscard]] inline bool isPlaybackStream(const Node& node) {
    return node.mediaClass == "Stream/Output/Audio";
}

/// What plays to it is heard outside.
[[nodiscard]] inline bool isOutputDevice(const Node& node) {
    return node.mediaClass == "Audio/Sink" || node.mediaClass == "Audio/Duplex";
}

/// A sink that is not offered to anybody, as ours for silenced applications.
[[nodiscard]] inline bool isMuteSink(const Node& node) {
    return node.mediaClass == "Audio/Sink/Internal";
}

/// What a stream can be sent to by its `node.name`: no stream, whatever it is called. Null when it
/// is not there.
[[nodiscard]] const Node* deviceNamed(const Graph& graph, std::string_view name);

/// Null when the value names nothing that is there.
[[nodiscard]] const Node*
targetOf(const Graph& graph, std::string_view key, const MetadataValue& value);

} // namespace velmora::pipewire
