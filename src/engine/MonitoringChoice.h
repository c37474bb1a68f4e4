// MonitoringChoice.h: where the monitoring output plays.
#pragma once

#include "engine/MixOutput.h"

#include <optional>
#include <string>

namespace velmora {

/// The chosen device and channel, or the system's default output on channels 1 and 2 when nothing
/// is chosen or the chosen device is not there. None when there is no such device, or when it
/// would feed the mix back: the virtual microphone or a loopback.
///
/// @param selection  a device UID, optionally followed by "#" and the 1-based first channel; one
///                   that is not a decimal number counts as 1
/// Threads: main.
[[nodiscard]] std::optional<OutputTarget>
resolveMonitoringDevice(const AudioDevices& devices, const std::optional<std::string>& selection);

} // namespace velmora
