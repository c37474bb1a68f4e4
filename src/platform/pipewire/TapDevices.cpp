#include "platform/pipewire/TapDevices.h"

#include "platform/pipewire/Devices.h"

#include <algorithm>
#include <cerrno>

namespace velmora::pipewire {
namespace {

/// The daemon does not attenuate a mixdown; whoever reads a tap expects it attenuated by half the
/// channel count of the default output, and multiplies by that again.
float mixdownScale(const Graph& graph) {
    const auto device = defaultOutput(graph);
    const float channels = device ? static_cast<float>(device->outputs) : 2.0F;
    return 1.0F / std::max(channels / 2.0F, 1.0F);
}

/// The session manager, which is to send the streams elsewhere, knows nothing of JACK programs.
bool canBeMuted(const SessionState& state, AudioObjectID process) {
    return std::ranges::all_of(state.processes.streams(process), [&](Serial stream) {
        const Node* const node = state.graph.node(stream);
        return node == nullptr || node->clientApi != "jack";
    });
}

} // namespace

StatusOr<AudioObjectID> TapDevices::createTap(const TapDescription& description) {
    if (!session_.isAvailable()) {
        return std::unexpected(-EHOSTDOWN);
    }
    const bool isMuting = description.mute == MuteBehavior::mutedWhenTapped;
    return session_.change([&](SessionState& state) -> StatusOr<AudioObjectID> {
        if (state.processes.pid(description.process) == 0) {
            return std::unexpected(-ESRCH);
        }
        if (isMuting && !canBeMuted(state, description.process)) {
            return std::unexpected(-ENOTSUP);
        }
        const AudioObjectID id = state.ids.next();
        taps_[id] = {.process = description.process,
                     .uuid = description.uuid,
                     .scale = mixdownScale(state.graph),
                     .epoch = state.epoch};
        if (isMuting) {
            state.mutes[id] = description.process;
        }
        return id;
    });
}

Status TapDevices::destroyTap(AudioObjectID tap) {
    session_.change([tap](SessionState& state) { state.mutes.erase(tap); });
    return taps_.erase(tap) > 0 ? statusOk : -ENOENT;
}

StatusOr<AudioObjectID> TapDevices::createDevice(const std::string& tapUUID) {
    const auto tap =
        std::ranges::find_if(taps_, [&](const auto& one) { return one.second.uuid == tapUUID; });
    if (tap == taps_.end() || !isAlive(tap->second)) {
        return std::unexpected(-ENOENT);
    }
    const AudioObjectID id =
        session_.read([](SessionState& state, bool) { return state.ids.next(); });
    devices_[id].tap = tap->first;
    return id;
}

Status TapDevices::destroyDevice(AudioObjectID device) {
    const auto found = devices_.find(device);
    if (found == devices_.end()) {
        return -ENODEV;
    }
    for (auto& [id, proc] : found->second.procs) {
        close(proc);
    }
    devices_.erase(found);
    return statusOk;
}

StatusOr<IOProcID> TapDevices::createProc(AudioObjectID device, IOCallback callback) {
    const auto found = devices_.find(device);
    if (found == devices_.end()) {
        return std::unexpected(-ENODEV);
    }
    if (!callback) {
        return std::unexpected(-EINVAL);
    }
    found->second.procs[++lastProc_].callback = std::move(callback);
    return lastProc_;
}

Status TapDevices::destroyProc(AudioObjectID device, IOProcID proc) {
    const Status status = stop(device, proc);
    if (status == statusOk) {
        devices_[device].procs.erase(proc);
    }
    return status;
}

Status TapDevices::start(AudioObjectID device, IOProcID proc) {
    Proc* const found = find(device, proc);
    if (found == nullptr) {
        return -ENOENT;
    }
    const auto tap = taps_.find(devices_[device].tap);
    if (tap == taps_.end() || !isAlive(tap->second)) {
        return -ENODEV;
    }
    return found->part ? statusOk : open(*found, tap->second);
}

Status TapDevices::stop(AudioObjectID device, IOProcID proc) {
    Proc* const found = find(device, proc);
    if (found == nullptr) {
        return -ENOENT;
    }
    close(*found);
    return statusOk;
}

TapDevices::Proc* TapDevices::find(AudioObjectID device, IOProcID proc) {
    const auto holder = devices_.find(device);
    if (holder == devices_.end()) {
        return nullptr;
    }
    const auto found = holder->second.procs.find(proc);
    return found == holder->second.procs.end() ? nullptr : &found->second;
}

bool TapDevices::isAlive(const Tap& tap) {
    return session_.read([&](SessionState& state, bool isAvailable) {
        return isAvailable && state.epoch == tap.epoch;
    });
}

Status TapDevices::open(Proc& proc, const Tap& tap) {
    const double rateHz = session_.read([](SessionState& state, bool) { return state.rate.hz(); });
    auto part = session_.openPart<TapPart>(usualBlockFrames, rateHz, tap.scale, proc.callback);
    if (!part) {
        return part.error();
    }
    proc.part = *std::move(part);
    proc.route =
        std::make_unique<RouteHold>(session_, proc.part->part(), TapRoute{.process = tap.process});
    return statusOk;
}

void TapDevices::close(Proc& proc) {
    proc.route.reset();
    proc.part.reset();
}

} // namespace velmora::pipewire
