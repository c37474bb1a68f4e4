// DeviceOptions.h: the outputs that the settings window offers.
#pragma once

#include <string>
#include <vector>

namespace velmora {

class AppSettings;
class AudioDevices;
class SourceManager;
struct Choice;

using DeviceOptions = std::vector<Choice>;

// Only physical devices: never a virtual one, never an aggregate, the DAW device
// included. Threads: main.

/// The default output, then every output device: one entry for each pair of channels, "uid#first",
/// up to the 32nd channel.
[[nodiscard]] DeviceOptions monitoringOptions(const AudioDevices& devices,
                                              const SourceManager& sources,
                                              const AppSettings& settings);

/// The invitation to choose, then every output device under its UID.
[[nodiscard]] DeviceOptions dawInterfaceOptions(const AudioDevices& devices,
                                                const SourceManager& sources,
                                                const AppSettings& settings);

} // namespace velmora
