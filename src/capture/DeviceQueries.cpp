#include "capture/DeviceQueries.h"

#include "capture/NameCompare.h"
#include "platform/PublicSinks.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace velmora {
namespace {

constexpr std::string_view loopbackName = "blackhole";
/// The private devices that captures of applications make on some systems.
constexpr std::string_view privateDevicePrefix = "CADefaultDeviceAggregate";

struct NamedDevice {
    AudioObjectID id{};
    std::string name;
};

/// Every device whose name can be read.
std::vector<NamedDevice> namedDevices(const AudioDevices& devices) {
    std::vector<NamedDevice> named;
    for (const AudioObjectID id : allDeviceIDs(devices)) {
        if (auto name = devices.deviceName(id)) {
            named.push_back({id, std::move(*name)});
        }
    }
    return named;
}

std::vector<NamedDevice> usableDevices(const AudioDevices& devices, Scope scope) {
    auto usable = namedDevices(devices);
    std::erase_if(usable, [&](const NamedDevice& device) {
        const auto streams = devices.streamChannels(device.id, scope);
        return !streams || streams->empty() || isVirtualMicName(device.name) ||
               device.name.starts_with(privateDevicePrefix);
    });
    return usable;
}

std::vector<AudioSource> asSources(const std::vector<NamedDevice>& devices) {
    std::vector<AudioSource> sources;
    for (const NamedDevice& device : devices) {
        sources.emplace_back(DeviceSource{.id = device.id, .name = device.name});
    }
    return sources;
}

std::vector<InputDeviceInfo> asInfos(const AudioDevices& devices, Scope scope) {
    std::vector<InputDeviceInfo> infos;
    for (NamedDevice& device : usableDevices(devices, scope)) {
        infos.push_back({.deviceID = device.id,
                         .name = std::move(device.name),
                         .channels = channelCount(devices, device.id, scope),
                         .isVirtual = false});
    }
    return infos;
}

} // namespace

std::vector<AudioSource> listInputDevices(const AudioDevices& devices) {
    return asSources(usableDevices(devices, Scope::input));
}

std::vector<AudioSource> listOutputDevices(const AudioDevices& devices) {
    return asSources(usableDevices(devices, Scope::output));
}

std::vector<InputDeviceInfo> listInputDeviceInfos(const AudioDevices& devices) {
    auto infos = asInfos(devices, Scope::input);
    for (InputDeviceInfo& info : infos) {
        info.isVirtual =
            devices.transport(info.deviceID).value_or(Transport::other) != Transport::other;
    }
    return infos;
}

std::vector<InputDeviceInfo> listOutputDeviceInfos(const AudioDevices& devices) {
    return asInfos(devices, Scope::output);
}

std::vector<AudioObjectID> allDeviceIDs(const AudioDevices& devices) {
    return devices.devices().value_or(std::vector<AudioObjectID>{});
}

std::optional<AudioObjectID> findDevice(const AudioDevices& devices, std::string_view uid) {
    const auto ids = allDeviceIDs(devices);
    const auto found =
        std::ranges::find_if(ids, [&](AudioObjectID id) { return devices.deviceUID(id) == uid; });
    return found == ids.end() ? std::nullopt : std::optional(*found);
}

std::optional<std::string> deviceName(const AudioDevices& devices, AudioObjectID device) {
    return devices.deviceName(device);
}

std::optional<std::string> deviceUID(const AudioDevices& devices, AudioObjectID device) {
    return devices.deviceUID(device);
}

bool isDeviceThere(const AudioDevices& devices, const AudioSource& source) {
    if (const DeviceSource* const device = source.device()) {
        return devices.deviceUID(device->id).has_value();
    }
    const DeviceChannelsSource* const channels = source.deviceChannels();
    return channels != nullptr && devices.deviceUID(channels->id).has_value();
}

std::int64_t channelCount(const AudioDevices& devices, AudioObjectID device, Scope scope) {
    const auto streams = devices.streamChannels(device, scope);
    return streams ? std::accumulate(streams->begin(), streams->end(), std::int64_t{0}) : 0;
}

std::optional<AudioObjectID> findVirtualMicDevice(const AudioDevices& devices) {
    const auto named = namedDevices(devices);
    for (const std::string_view wanted : {virtualMicrophoneWord, loopbackName}) {
        for (const NamedDevice& device : named) {
            if (containsIgnoringCase(device.name, wanted)) {
                return device.id;
            }
        }
    }
    return std::nullopt;
}

std::optional<AudioObjectID> findMixMicrophone(const AudioDevices& devices) {
    return findVirtualMicDevice(devices).and_then([&](AudioObjectID device) {
        return deviceUID(devices, device) == dawSinkUID ? std::nullopt : std::optional(device);
    });
}

bool isVirtualMicName(std::string_view name) {
    return containsIgnoringCase(name, virtualMicrophoneWord) ||
           containsIgnoringCase(name, loopbackName);
}

} // namespace velmora
