// DeviceQueries.h: questions about applications and devices, asked afresh each time.
#pragma once

#include "capture/InputDeviceInfo.h"
#include "engine/AudioSource.h"
#include "platform/AudioDevices.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class Applications;
class ApplicationTaps;

/// Everything here reads the platform and keeps nothing. What cannot be read is left out of a list
/// or is none; nothing reports an error.
///
/// Threads: any that may ask the platform; the program asks on the main one. Real-time: no.

struct AudioApps {
    std::vector<AudioSource> apps;      ///< `AppSource` each: playing ones first, then by name
    std::set<std::int32_t> playingPIDs; ///< those of `apps` that are producing sound now
};
[[nodiscard]] AudioApps listAudioApps(const ApplicationTaps& taps,
                                      const Applications& applications);

/// Devices in the system's order, without virtual microphones, loopbacks and private devices.
[[nodiscard]] std::vector<AudioSource> listInputDevices(const AudioDevices& devices);
[[nodiscard]] std::vector<AudioSource> listOutputDevices(const AudioDevices& devices);
[[nodiscard]] std::vector<InputDeviceInfo> listInputDeviceInfos(const AudioDevices& devices);
[[nodiscard]] std::vector<InputDeviceInfo> listOutputDeviceInfos(const AudioDevices& devices);

/// In the system's order; empty when it does not answer.
[[nodiscard]] std::vector<AudioObjectID> allDeviceIDs(const AudioDevices& devices);
/// The first device with exactly this UID.
[[nodiscard]] std::optional<AudioObjectID> findDevice(const AudioDevices& devices,
                                                      std::string_view uid);
[[nodiscard]] std::optional<std::string> deviceName(const AudioDevices& devices,
                                                    AudioObjectID device);
[[nodiscard]] std::optional<std::string> deviceUID(const AudioDevices& devices,
                                                   AudioObjectID device);
/// Whether the device of a source can be read; false for an application.
[[nodiscard]] bool isDeviceThere(const AudioDevices& devices, const AudioSource& source);
/// Channels of all streams in one direction; 0 when it cannot be read.
[[nodiscard]] std::int64_t
channelCount(const AudioDevices& devices, AudioObjectID device, Scope scope);

/// The first device whose name contains "velmora", otherwise the first whose name contains
/// "blackhole". Deliberate: known by its name alone, and the free loopback driver of the second
/// name serves as well.
[[nodiscard]] std::optional<AudioObjectID> findVirtualMicDevice(const AudioDevices& devices);

/// The one that a mix plays into: never the device of DAW mode, whose name holds the microphone's
/// word as well. It would play the mix into the interface, and is found while the microphone is
/// away for a moment.
[[nodiscard]] std::optional<AudioObjectID> findMixMicrophone(const AudioDevices& devices);

/// Whether a device of this name carries our own mix or is a loopback: never offered as a source,
/// never monitored on.
[[nodiscard]] bool isVirtualMicName(std::string_view name);

} // namespace velmora
