#include "platform/pipewire/Hardware.h"

#include <algorithm>
#include <cerrno>
#include <iterator>

namespace velmora::pipewire {
namespace {

/// One device by number; none while the service does not answer.
std::optional<Device> deviceOf(Session& session, AudioObjectID id) {
    return session.read([id](SessionState& state, bool isAvailable) -> std::optional<Device> {
        for (Device& device : isAvailable ? listDevices(state.graph) : std::vector<Device>{}) {
            if (state.ids.ofDevice(device.uid) == id) {
                return std::move(device);
            }
        }
        return std::nullopt;
    });
}

template <typename Value>
std::optional<Value> valueOf(const std::optional<Device>& device, Value Device::*member) {
    return device ? std::optional((*device).*member) : std::nullopt;
}

std::optional<Device> defaultDevice(const SessionState& state) {
    const auto name = state.graph.defaultSinkName();
    return name ? findDevice(listDevices(state.graph), *name) : std::nullopt;
}

/// The daemon does not attenuate a downmix; whoever reads a tap expects it attenuated by half the
/// channel count of the default output, and multiplies by that again.
float mixdownScale(const SessionState& state) {
    const auto device = defaultDevice(state);
    const float channels = device ? static_cast<float>(device->outputs) : 2.0F;
    return 1.0F / std::max(channels / 2.0F, 1.0F);
}

} // namespace

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
    if (!aggregates_.contains(device) && !deviceOf(session_, device)) {
        return std::nullopt;
    }
    return session_.read([](SessionState& state, bool isAvailable) {
        return isAvailable ? std::optional(state.graph.rate()) : std::nullopt;
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
        const auto device = isAvailable ? defaultDevice(state) : std::nullopt;
        return device ? std::optional(state.ids.ofDevice(device->uid)) : std::nullopt;
    });
}

void Hardware::onDefaultOutputChange(std::function<void()> listener) {
    listener_ = std::move(listener);
}

void Hardware::defaultOutputChanged() const {
    if (listener_) {
        listener_();
    }
}

StatusOr<AudioObjectID> Hardware::createTap(const TapDescription& description) {
    if (!session_.isAvailable()) {
        return std::unexpected(-EHOSTDOWN);
    }
    return session_.change([&](SessionState& state) -> StatusOr<AudioObjectID> {
        if (state.processes.pid(description.process) == 0) {
            return std::unexpected(-ESRCH);
        }
        const AudioObjectID id = state.ids.next();
        taps_[id] = {.process = description.process,
                     .uuid = description.uuid,
                     .scale = mixdownScale(state),
                     .epoch = state.epoch};
        if (description.mute == MuteBehavior::mutedWhenTapped) {
            state.mutes[id] = description.process;
        }
        return id;
    });
}

Status Hardware::destroyTap(AudioObjectID tap) {
    session_.change([tap](SessionState& state) { state.mutes.erase(tap); });
    return taps_.erase(tap) > 0 ? statusOk : -ENOENT;
}

StatusOr<AudioObjectID> Hardware::createAggregate(const AggregateDescription& description) {
    if (description.taps.size() == 1 && description.subDevices.empty()) {
        return createTapDevice(description.taps.front());
    }
    if (description.taps.empty() && !description.subDevices.empty() && !description.isPrivate) {
        return createPublicDevice(description);
    }
    return std::unexpected(-ENOTSUP);
}

StatusOr<AudioObjectID> Hardware::createTapDevice(const std::string& tapUUID) {
    const auto tap =
        std::ranges::find_if(taps_, [&](const auto& one) { return one.second.uuid == tapUUID; });
    if (tap == taps_.end() || !isAlive(tap->second)) {
        return std::unexpected(-ENOENT);
    }
    const AudioObjectID id =
        session_.read([](SessionState& state, bool) { return state.ids.next(); });
    aggregates_[id].tap = tap->first;
    return id;
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
    const auto aggregate = aggregates_.find(device);
    if (aggregate == aggregates_.end()) {
        const auto found = deviceOf(session_, device);
        const bool isAggregate = found && found->transport == Transport::aggregate;
        return isAggregate ? session_.destroyAggregate(found->uid) : -ENODEV;
    }
    for (auto& [id, proc] : aggregate->second.procs) {
        stop(proc);
    }
    aggregates_.erase(aggregate);
    return statusOk;
}

StatusOr<IOProcID> Hardware::createIOProc(AudioObjectID device, IOCallback callback) {
    const auto aggregate = aggregates_.find(device);
    if (aggregate == aggregates_.end()) {
        return std::unexpected(-ENODEV);
    }
    if (!callback) {
        return std::unexpected(-EINVAL);
    }
    aggregate->second.procs[++lastProc_].callback = std::move(callback);
    return lastProc_;
}

Status Hardware::destroyIOProc(AudioObjectID device, IOProcID proc) {
    Proc* const found = findProc(device, proc);
    if (found == nullptr) {
        return -ENOENT;
    }
    stop(*found);
    aggregates_[device].procs.erase(proc);
    return statusOk;
}

Status Hardware::startDevice(AudioObjectID device, IOProcID proc) {
    Proc* const found = findProc(device, proc);
    if (found == nullptr) {
        return -ENOENT;
    }
    const auto tap = taps_.find(aggregates_[device].tap);
    if (tap == taps_.end() || !isAlive(tap->second)) {
        return -ENODEV;
    }
    return found->node ? statusOk : start(*found, tap->second);
}

Status Hardware::stopDevice(AudioObjectID device, IOProcID proc) {
    Proc* const found = findProc(device, proc);
    if (found == nullptr) {
        return -ENOENT;
    }
    stop(*found);
    return statusOk;
}

Hardware::Proc* Hardware::findProc(AudioObjectID device, IOProcID proc) {
    const auto aggregate = aggregates_.find(device);
    if (aggregate == aggregates_.end()) {
        return nullptr;
    }
    const auto found = aggregate->second.procs.find(proc);
    return found == aggregate->second.procs.end() ? nullptr : &found->second;
}

bool Hardware::isAlive(const Tap& tap) const {
    return session_.read([&](SessionState& state, bool isAvailable) {
        return isAvailable && state.epoch == tap.epoch;
    });
}

Status Hardware::start(Proc& proc, const Tap& tap) {
    const TapNode::Setup setup = session_.change([&](SessionState& state) {
        proc.nodeName = state.newNodeName("tap");
        state.routes[proc.nodeName] = TapRoute{.process = tap.process};
        return TapNode::Setup{.name = proc.nodeName,
                              .blockFrames = usualBlockFrames,
                              .rateHz = state.graph.rate(),
                              .scale = tap.scale};
    });
    auto node = TapNode::open(setup, proc.callback);
    if (!node) {
        stop(proc);
        return node.error();
    }
    proc.node = *std::move(node);
    return statusOk;
}

void Hardware::stop(Proc& proc) {
    session_.change([&](SessionState& state) { state.routes.erase(proc.nodeName); });
    proc.node.reset();
}

} // namespace velmora::pipewire
