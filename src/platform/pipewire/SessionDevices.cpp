#include "platform/pipewire/SessionDevices.h"

#include "platform/pipewire/view/Devices.h"
#include "platform/pipewire/view/Recording.h"

#include <algorithm>
#include <cerrno>
#include <iterator>

namespace velmora::pipewire {
namespace {

/// None while the service does not answer.
std::optional<Device> deviceOf(Session& session, AudioObjectID id) {
    return session.read([id](SessionState& state, bool isAvailable) {
        return isAvailable ? state.device(id) : std::nullopt;
    });
}

template <typename Value>
std::optional<Value> valueOf(const std::optional<Device>& device, Value Device::*member) {
    return device ? std::optional((*device).*member) : std::nullopt;
}

} // namespace

std::optional<std::vector<AudioObjectID>> SessionDevices::devices() const {
    using Ids = std::vector<AudioObjectID>;
    return session_.read([](SessionState& state, bool isAvailable) -> std::optional<Ids> {
        if (!isAvailable) {
            return std::nullopt;
        }
        Ids ids;
        std::ranges::transform(
            listDevices(state.graph), std::back_inserter(ids), [&](const Device& device) {
                return state.ids.ofDevice(device.uid);
            });
        return ids;
    });
}

std::optional<std::string> SessionDevices::deviceName(AudioObjectID device) const {
    return valueOf(deviceOf(session_, device), &Device::name);
}

std::optional<std::string> SessionDevices::deviceUID(AudioObjectID device) const {
    return valueOf(deviceOf(session_, device), &Device::uid);
}

std::optional<std::vector<std::uint32_t>> SessionDevices::streamChannels(AudioObjectID device,
                                                                         Scope scope) const {
    const auto found = deviceOf(session_, device);
    if (!found) {
        return std::nullopt;
    }
    const std::uint32_t count = scope == Scope::input ? found->inputs : found->outputs;
    return count == 0 ? std::vector<std::uint32_t>{} : std::vector<std::uint32_t>{count};
}

std::optional<Transport> SessionDevices::transport(AudioObjectID device) const {
    return valueOf(deviceOf(session_, device), &Device::transport);
}

bool SessionDevices::isBluetooth(AudioObjectID device) const {
    return valueOf(deviceOf(session_, device), &Device::isBluetooth).value_or(false);
}

std::optional<double> SessionDevices::nominalRate(AudioObjectID device) const {
    // Everything that we exchange with the graph is at the graph's rate, whatever the device's is.
    if (!deviceOf(session_, device)) {
        return std::nullopt;
    }
    return session_.read([](SessionState& state, bool isAvailable) {
        return isAvailable ? std::optional(state.rate.hz()) : std::nullopt;
    });
}

Status SessionDevices::requestBufferFrames(AudioObjectID device, std::uint32_t frames) {
    if (!deviceOf(session_, device)) {
        return -ENODEV;
    }
    if (frames == 0) {
        return -EINVAL;
    }
    session_.change([&](SessionState& state) { state.blockFrames[device] = frames; });
    return statusOk;
}

std::optional<AudioObjectID> SessionDevices::defaultOutputDevice() const {
    return session_.read([](SessionState& state, bool isAvailable) -> std::optional<AudioObjectID> {
        const auto device = isAvailable ? defaultOutput(state.graph) : std::nullopt;
        return device ? std::optional(state.ids.ofDevice(device->uid)) : std::nullopt;
    });
}

std::optional<Recorders> SessionDevices::recorders(AudioObjectID device) const {
    return session_.read(
        [device](SessionState& state, bool isAvailable) -> std::optional<Recorders> {
            const auto found = isAvailable ? state.device(device) : std::nullopt;
            if (!found) {
                return std::nullopt;
            }
            const auto recorded = recordedDevices(state.graph, state.processes);
            const auto there = recorded.find(found->node);
            return there == recorded.end() ? Recorders{} : there->second;
        });
}

std::optional<DeviceVolume> SessionDevices::recordingVolume(AudioObjectID device) const {
    const auto found = deviceOf(session_, device);
    return found ? found->volume : std::nullopt;
}

Status SessionDevices::setRecordingVolume(AudioObjectID device, const DeviceVolume& volume) {
    return session_.requestVolume(device, volume);
}

} // namespace velmora::pipewire
