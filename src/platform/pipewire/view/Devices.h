// Devices.h: which nodes are devices, and what the mixer wants to know of them.
#pragma once

#include "platform/AudioDevices.h"
#include "platform/pipewire/view/Graph.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::pipewire {

struct Device {
    Serial node{};
    std::string uid; ///< `node.name`, mostly; see `CardNames`
    std::string name;
    std::uint32_t inputs{};  ///< channels that can be recorded
    std::uint32_t outputs{}; ///< channels that can be played to
    Transport transport{};
    bool isBluetooth{};
    std::optional<DeviceVolume> volume{}; ///< see `AudioDevices::recordingVolume`

    bool operator==(const Device&) const = default;
};

/// In the system's order: as they came, the DAW device last. Of two nodes with one name only the
/// first is listed.
[[nodiscard]] std::vector<Device> listDevices(const Graph& graph);

[[nodiscard]] std::optional<Device> findDevice(const std::vector<Device>& devices,
                                               std::string_view uid);

/// The session's default output, once it exists.
[[nodiscard]] std::optional<Device> defaultOutput(const Graph& graph);

/// The ports of a device's channels, channel 1 first.
[[nodiscard]] std::vector<Port> playbackPorts(const Node& device);
/// A sink's own output ports are monitors, not recordable channels; those of anything else count,
/// even when marked as monitors (a virtual source's are).
[[nodiscard]] std::vector<Port> recordingPorts(const Node& device);

} // namespace velmora::pipewire
