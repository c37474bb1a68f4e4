// NodeVolume.h: a node's own volume, as the daemon's words have it.
#pragma once

#include "platform/AudioDevices.h"
#include "platform/Status.h"
#include "platform/pipewire/daemon/Connection.h"

#include <cstdint>
#include <optional>

struct spa_pod;

namespace velmora::pipewire {

/// From one of a node's `Props`; none when it does not speak of the volume.
[[nodiscard]] std::optional<DeviceVolume> readVolume(const spa_pod& properties);

/// Asks for it on every channel. Threads: any, with the loop's lock.
Status requestVolume(Connection& connection,
                     GlobalId node,
                     std::uint32_t channels,
                     const DeviceVolume& volume);

} // namespace velmora::pipewire
