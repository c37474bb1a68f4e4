// Routes.h: what the mix's parts want to be connected to, and the links that follow from it.
#pragma once

#include "platform/AudioDevices.h"
#include "platform/pipewire/view/Graph.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <variant>
#include <vector>

namespace velmora::pipewire {

/// The order of an output's ports. Mono is half of left and right together.
enum class PlaybackPort { left, right, mono };
inline constexpr std::size_t playbackPortCount = 3;

/// Hears every output stream of one application, also those that come later. Its ports are in the
/// order of `TapInput`.
struct TapRoute {
    AudioObjectID process{};
};

/// Its ports are in the order of `PlaybackPort`.
/// Plays to the device whenever a device with this UID exists. A pair that meets a single channel
/// becomes mono.
struct PlaybackRoute {
    std::string deviceUID;
    /// One entry per device channel: −1 = silent, 0 = left, 1 = right.
    std::vector<std::int32_t> map;
};

/// Records the device's channels, from the 0-based `first` on, one by each port, whenever it
/// exists.
struct RecordingRoute {
    std::string deviceUID;
    std::size_t first{};
};

using Route = std::variant<TapRoute, PlaybackRoute, RecordingRoute>;

/// Where a part's ports are found in the graph.
struct PartPorts {
    std::string node; ///< `node.name`
    std::vector<std::string> names;
};

struct PartRoute {
    PartPorts ports;
    Route route;
};
using RouteId = std::uint64_t;
using Routes = std::map<RouteId, PartRoute>;

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
[[nodiscard]] std::set<WantedLink>
wantedLinks(const Graph& graph, const Routes& routes, const StreamsOf& streamsOf);

/// True while any port of the part has a link, whoever made it.
[[nodiscard]] bool areLinked(const Graph& graph, const PartPorts& ports);

} // namespace velmora::pipewire
