// MonitoringChoice.h: where the monitoring output plays.
#pragma once

#include "engine/MixOutput.h"

#include <optional>
#include <string>

namespace velmora {

// A selection is a device UID, optionally followed by "#" and the 1-based first channel; one that
// is not a decimal number counts as 1. Threads: main.

/// The chosen device and channel, or the system's default output on channels 1 and 2 when nothing
/// is chosen or the chosen device is not there. None when there is no such device, or when it
/// would feed the mix back: the virtual microphone or a loopback.
[[nodiscard]] std::optional<OutputTarget>
resolveMonitoringDevice(const AudioDevices& devices, const std::optional<std::string>& selection);

/// Whether a device is chosen at all.
[[nodiscard]] bool namesMonitor(const std::optional<std::string>& selection);

/// The chosen device, if one is chosen and there.
[[nodiscard]] std::optional<OutputTarget>
chosenMonitor(const AudioDevices& devices, const std::optional<std::string>& selection);

/// `target`, unless its device has gone or would feed the mix back.
[[nodiscard]] std::optional<OutputTarget> monitorable(const AudioDevices& devices,
                                                      const OutputTarget& target);

} // namespace velmora
