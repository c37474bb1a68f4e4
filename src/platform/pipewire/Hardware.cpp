#include "platform/pipewire/Hardware.h"

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

void Hardware::onAvailabilityChange(std::function<void(bool isAvailable)> listener) {
    availabilityListeners_.push_back(std::move(listener));
}

std::uint32_t Hardware::generation() const {
    return session_.read([](SessionState& state, bool) { return state.epoch; });
}

void Hardware::availabilityChanged(bool isAvailable) const {
    for (const auto& listener : availabilityListeners_) {
        listener(isAvailable);
    }
}

std::optional<std::vector<AudioObjectID>> Hardware::processObjects() const {
    applications_.resolveAll();
    return session_.read([](SessionState& state, bool isAvailable) {
        return isAvailable ? std::optional(state.processes.objects()) : std::nullopt;
    });
}

std::optional<std::int32_t> Hardware::processPid(AudioObjectID process) const {
    const std::int32_t pid = session_.read(
        [process](SessionState& state, bool) { return state.processes.pid(process); });
    return pid == 0 ? std::nullopt : std::optional(pid);
}

std::optional<bool> Hardware::processIsRunningOutput(AudioObjectID process) const {
    return session_.read([process](SessionState& state, bool) -> std::optional<bool> {
        if (state.processes.pid(process) == 0) {
            return std::nullopt;
        }
        return std::ranges::any_of(state.processes.streams(process), [&](Serial stream) {
            const Node* const node = state.graph.node(stream);
            return node != nullptr && node->isRunning;
        });
    });
}

std::optional<AudioObjectID> Hardware::processForPid(std::int32_t pid) const {
    applications_.resolveAll();
    const std::int32_t leader = applications_.leader(pid);
    const AudioObjectID object = session_.read([leader](SessionState& state, bool isAvailable) {
        return isAvailable ? state.processes.objectOf(leader) : 0;
    });
    return object == 0 ? std::nullopt : std::optional(object);
}

std::optional<std::vector<AudioObjectID>> Hardware::devices() const {
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

std::optional<std::string> Hardware::deviceName(AudioObjectID device) const {
    return valueOf(deviceOf(session_, device), &Device::name);
}

std::optional<std::string> Hardware::deviceUID(AudioObjectID device) const {
    return valueOf(deviceOf(session_, device), &Device::uid);
}

std::optional<std::vector<std::uint32_t>> Hardware::streamChannels(AudioObjectID device,
                                                                   Scope scope) const {
    const auto found = deviceOf(session_, device);
    if (!found) {
        return std::nullopt;
    }
    const std::uint32_t count = scope == Scope::input ? found->inputs : found->outputs;
    return count == 0 ? std::vector<std::uint32_t>{} : std::vector<std::uint32_t>{count};
}

std::optional<Transport> Hardware::transport(AudioObjectID device) const {
    return valueOf(deviceOf(session_, device), &Device::transport);
}

std::optional<double> Hardware::nominalRate(AudioObjectID device) const {
    // Everything that we exchange with the graph is at the graph's rate, whatever the device's is.
    if (!taps_.contains(device) && !deviceOf(session_, device)) {
        return std::nullopt;
    }
    return session_.read([](SessionState& state, bool isAvailable) {
        return isAvailable ? std::optional(state.rate.hz()) : std::nullopt;
    });
}

Status Hardware::requestBufferFrames(AudioObjectID device, std::uint32_t frames) {
    if (!deviceOf(session_, device)) {
        return -ENODEV;
    }
    if (frames == 0) {
        return -EINVAL;
    }
    session_.change([&](SessionState& state) { state.blockFrames[device] = frames; });
    return statusOk;
}

std::optional<AudioObjectID> Hardware::defaultOutputDevice() const {
    return session_.read([](SessionState& state, bool isAvailable) -> std::optional<AudioObjectID> {
        const auto device = isAvailable ? defaultOutput(state.graph) : std::nullopt;
        return device ? std::optional(state.ids.ofDevice(device->uid)) : std::nullopt;
    });
}

void Hardware::onDefaultOutputChange(std::function<void()> listener) {
    defaultOutputListener_ = std::move(listener);
}

void Hardware::defaultOutputChanged() const {
    if (defaultOutputListener_) {
        defaultOutputListener_();
    }
}

StatusOr<AudioObjectID> Hardware::createTap(const TapDescription& description) {
    return taps_.createTap(description);
}

Status Hardware::destroyTap(AudioObjectID tap) {
    return taps_.destroyTap(tap);
}

StatusOr<AudioObjectID> Hardware::createAggregate(const AggregateDescription& description) {
    if (description.taps.size() == 1 && description.subDevices.empty()) {
        return taps_.createDevice(description.taps.front());
    }
    if (description.taps.empty() && !description.subDevices.empty() && !description.isPrivate) {
        return createPublicDevice(description);
    }
    return std::unexpected(-ENOTSUP);
}

StatusOr<AudioObjectID> Hardware::createPublicDevice(const AggregateDescription& description) {
    PublicAggregate aggregate{.uid = description.uid, .name = description.name, .members = {}};
    for (const SubDevice& member : description.subDevices) {
        aggregate.members.push_back(member.uid);
    }
    const bool areAllThere = session_.read([&](SessionState& state, bool isAvailable) {
        const auto devices = listDevices(state.graph);
        return isAvailable && std::ranges::all_of(aggregate.members, [&](const std::string& uid) {
                   return findDevice(devices, uid).has_value();
               });
    });
    if (!areAllThere || aggregate.uid.empty()) {
        return std::unexpected(areAllThere ? -EINVAL : -ENODEV);
    }
    if (const Status status = session_.createAggregate(aggregate); status != statusOk) {
        return std::unexpected(status);
    }
    return session_.read(
        [&](SessionState& state, bool) { return state.ids.ofDevice(aggregate.uid); });
}

Status Hardware::destroyAggregate(AudioObjectID device) {
    if (taps_.contains(device)) {
        return taps_.destroyDevice(device);
    }
    const auto uid = session_.aggregateUID(device);
    return uid ? session_.destroyAggregate(*uid) : -ENODEV;
}

StatusOr<IOProcID> Hardware::createIOProc(AudioObjectID device, IOCallback callback) {
    return taps_.createProc(device, std::move(callback));
}

Status Hardware::destroyIOProc(AudioObjectID device, IOProcID proc) {
    return taps_.destroyProc(device, proc);
}

Status Hardware::startDevice(AudioObjectID device, IOProcID proc) {
    return taps_.start(device, proc);
}

Status Hardware::stopDevice(AudioObjectID device, IOProcID proc) {
    return taps_.stop(device, proc);
}

} // namespace velmora::pipewire
