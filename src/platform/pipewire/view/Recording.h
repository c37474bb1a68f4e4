// Recording.h: who records from the devices.
#pragma once

#include "platform/AudioDevices.h"
#include "platform/pipewire/view/Graph.h"
#include "platform/pipewire/view/ProcessDirectory.h"

#include <map>

namespace velmora::pipewire {

/// By the node of each device that somebody records from. A program that is linked to a device and
/// pauses does not record; whoever hears a sink's monitor records no device.
[[nodiscard]] std::map<Serial, Recorders> recordedDevices(const Graph& graph,
                                                          const ProcessDirectory& processes);

} // namespace velmora::pipewire
