#include "capture/DeviceQueries.h"

#include "capture/NameCompare.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace velmora {
namespace {

constexpr std::string_view ownName = "velmora";
constexpr std::string_view loopbackName = "blackhole";
/// The private devices that captures of applications make on some systems.
constexpr std::string_view privateDevicePrefix = "CADefaultDeviceAggregate";

struct NamedDevice {
    AudioObjectID id{};
    std::string name;
};

/// Every device whose name can be read.
std::vector<NamedDevice> namedDevices(const AudioHardware& hardware) {
    std::vector<NamedDevice> named;
    for (const AudioObjectID id : allDeviceIDs(hardware)) {
        if (auto name = hardware.deviceName(id)) {
            named.push_back({id, std::move(*name)});
        }
    }
    return named;
}

std::vector<NamedDevice> usableDevices(const AudioHardware& hardware, Scope scope) {
    auto devices = namedDevices(hardware);
    std::erase_if(devices, [&](const NamedDevice& device) {
        const auto streams = hardware.streamChannels(device.id, scope);
        return !streams || streams->empty() || isVirtualMicName(device.name) ||
               device.name.starts_with(privateDevicePrefix);
    });
    return devices;
}

std::vector<AudioSource> asSources(const std::vector<NamedDevice>& devices) {
    std::vector<AudioSource> sources;
    for (const NamedDevice& device : devices) {
        sources.emplace_back(DeviceSource{.id = device.id, .name = device.name});
    }
    return sources;
}

std::vector<InputDeviceInfo> asInfos(const AudioHardware& hardware, Scope scope) {
    std::vector<InputDeviceInfo> infos;
    for (NamedDevice& device : usableDevices(hardware, scope)) {
        infos.push_back({.deviceID = device.id,
                         .name = std::move(device.name),
                         .channels = channelCount(hardware, device.id, scope),
                         .isVirtual = false});
    }
    return infos;
}

} // namespace

std::vector<AudioSource> listInputDevices(const AudioHardware& hardware) {
    return asSources(usableDevices(hardware, Scope::input));
}

std::vector<AudioSource> listOutputDevices(const AudioHardware& hardware) {
    return asSources(usableDevices(hardware, Scope::output));
}

std::vector<InputDeviceInfo> listInputDeviceInfos(const AudioHardware& hardware) {
    auto infos = asInfos(hardware, Scope::input);
    for (InputDeviceInfo& info : infos) {
        info.isVirtual =
            hardware.transport(info.deviceID).value_or(Transport::other) != Transport::other;
    }
    return infos;
}

std::vector<InputDeviceInfo> listOutputDeviceInfos(const AudioHardware& hardware) {
    return asInfos(hardware, Scope::output);
}

std::vector<AudioObjectID> allDeviceIDs(const AudioHardware& hardware) {
    return hardware.devices().value_or(std::vector<AudioObjectID>{});
}

std::optional<AudioObjectID> findDevice(const AudioHardware& hardware, std::string_view uid) {
    const auto ids = allDeviceIDs(hardware);
    const auto found =
        std::ranges::find_if(ids, [&](AudioObjectID id) { return hardware.deviceUID(id) == uid; });
    return found == ids.end() ? std::nullopt : std::optional(*found);
}

std::optional<std::string> deviceName(const AudioHardware& hardware, AudioObjectID device) {
    return hardware.deviceName(device);
}

std::optional<std::string> deviceUID(const AudioHardware& hardware, AudioObjectID device) {
    return hardware.deviceUID(device);
}

std::int64_t channelCount(const AudioHardware& hardware, AudioObjectID device, Scope scope) {
    const auto streams = hardware.streamChannels(device, scope);
    return streams ? std::accumulate(streams->begin(), streams->end(), std::int64_t{0}) : 0;
}

std::optional<AudioObjectID> findVirtualMicDevice(const AudioHardware& hardware) {
    const auto devices = namedDevices(hardware);
    for (const std::string_view wanted : {ownName, loopbackName}) {
        for (const NamedDevice& device : devices) {
            if (containsIgnoringCase(device.name, wanted)) {
                return device.id;
            }
        }
    }
    return std::nullopt;
}

bool isVirtualMicName(std::string_view name) {
    return containsIgnoringCase(name, ownName) || containsIgnoringCase(name, loopbackName);
}

} // namespace velmora
