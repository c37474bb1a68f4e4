// VirtualMicrophone.h: the device that other programs record the mix from.
#pragma once

#include "platform/pipewire/daemon/Connection.h"
#include "platform/pipewire/view/Graph.h"

namespace velmora::pipewire {

/// True when a device whose name contains "velmora", in any case, can be played to. The device of
/// DAW mode has that word too and does not count.
[[nodiscard]] bool hasVirtualMicrophone(const Graph& graph);

/// True when such a device exists, also while it has no ports yet: a daemon makes its own devices
/// before their ports, and a second microphone of the same name would be the result of not waiting.
[[nodiscard]] bool knowsVirtualMicrophone(const Graph& graph);

/// Asks for a true source (not a sink's monitor) that also outlives this program.
/// Null when the request could not be sent.
[[nodiscard]] ProxyHandle createVirtualMicrophone(Connection& connection);

} // namespace velmora::pipewire
