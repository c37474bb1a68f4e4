// Routes.h: what the mix's parts want to be connected to, and the links that follow from it.
#pragma once

#include "platform/AudioHardware.h"
#include "platform/pipewire/Graph.h"

#include <compare>
#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace velmora::pipewire {

/// What the ports of our own node are for.
namespace own {
inline constexpr std::string_view left = "left";
inline constexpr std::string_view right = "right";
inline constexpr std::string_view mono = "mono"; ///< half of left and right together
inline constexpr std::string_view centre = "centre";
inline constexpr std::string_view surroundLeft = "surround_left";
inline constexpr std::string_view surroundRight = "surround_right";
/// Input port for channel `index` + 1 of a recorded device.
[[nodiscard]] std::string channel(std::uint32_t index);
/// A port's whole name.
[[nodiscard]] std::string port(const std::string& part, std::string_view purpose);
} // namespace own

/// Hears every output stream of one application, also those that come later.
struct TapRoute {
    AudioObjectID process{};
};

/// Plays to the device whenever a device with this UID exists. A pair that meets a single channel
/// becomes mono.
struct PlaybackRoute {
    std::string deviceUID;
    /// One entry per device channel: −1 = silent, 0 = left, 1 = right.
    std::vector<std::int32_t> map;
};

/// Records the first `channels` channels of the device whenever it exists.
struct RecordingRoute {
    std::string deviceUID;
    std::uint32_t channels{};
};

using Route = std::variant<TapRoute, PlaybackRoute, RecordingRoute>;
/// By the name of the part.
using Routes = std::map<std::string, Route, std::less<>>;

/// One link between two ports. Ports are told apart by serial; the ids serve the request only.
struct WantedLink {
    Serial output{};
    Serial input{};
    GlobalId outputId{};
    GlobalId inputId{};

    std::strong_ordering operator<=>(const WantedLink&) const = default;
};

using StreamsOf = std::function<std::vector<Serial>(AudioObjectID process)>;

/// Every link that should exist now.
/// @param mixNode  `node.name` of our node; empty = there is none
[[nodiscard]] std::set<WantedLink> wantedLinks(const Graph& graph,
                                               std::string_view mixNode,
                                               const Routes& routes,
                                               const StreamsOf& streamsOf);

} // namespace velmora::pipewire
