#include "platform/simulated/SimulatedAudioDevices.h"

#include "platform/simulated/GraphAccess.h"

#include <utility>

namespace velmora {

SimulatedAudioDevices::SimulatedAudioDevices(SimulatedSound& sound, MainQueue& mainQueue)
    : graph_(sound.graph_), mainQueue_(mainQueue) {
    const std::scoped_lock guard(graph_->mutex);
    graph_->tellChanged = [this] { postChanged(); };
    graph_->tellDefaultOutput = [this] {
        mainQueue_.post([this] { defaultOutputChanged().emit(); });
    };
}

/// Several changes before the main queue runs are told once.
void SimulatedAudioDevices::postChanged() {
    if (!std::exchange(isChangeDue_, true)) {
        mainQueue_.post([this] { emitChanged(); });
    }
}

void SimulatedAudioDevices::emitChanged() {
    {
        const std::scoped_lock guard(graph_->mutex);
        isChangeDue_ = false;
    }
    changed().emit();
}

bool SimulatedAudioDevices::isAvailable() const {
    const std::scoped_lock guard(graph_->mutex);
    return graph_->isAvailable;
}

std::optional<std::vector<AudioObjectID>> SimulatedAudioDevices::devices() const {
    return read(
        *graph_, Operation::devices, 0, [&] { return std::optional(idsOf(graph_->devices)); });
}

std::optional<std::string> SimulatedAudioDevices::deviceName(AudioObjectID device) const {
    return read(*graph_, Operation::deviceName, device, [&] {
        return selected(graph_->device(device), [](const auto& item) { return item.about.name; });
    });
}

std::optional<std::string> SimulatedAudioDevices::deviceUID(AudioObjectID device) const {
    return read(*graph_, Operation::deviceUID, device, [&] {
        return selected(graph_->device(device), [](const auto& item) { return item.about.uid; });
    });
}

std::optional<std::vector<std::uint32_t>>
SimulatedAudioDevices::streamChannels(AudioObjectID device, Scope scope) const {
    return read(*graph_, Operation::streamChannels, device, [&] {
        return selected(graph_->device(device), [&](const auto& item) {
            return scope == Scope::input ? item.about.inputs : item.about.outputs;
        });
    });
}

std::optional<Transport> SimulatedAudioDevices::transport(AudioObjectID device) const {
    return read(*graph_, Operation::transport, device, [&] {
        return selected(graph_->device(device),
                        [](const auto& item) { return item.about.transport; });
    });
}

bool SimulatedAudioDevices::isBluetooth(AudioObjectID device) const {
    return read(*graph_,
                Operation::transport,
                device,
                [&] {
                    return selected(graph_->device(device),
                                    [](const auto& item) { return item.about.isBluetooth; });
                })
        .value_or(false);
}

std::optional<double> SimulatedAudioDevices::nominalRate(AudioObjectID device) const {
    return read(*graph_, Operation::nominalRate, device, [&] {
        return selected(graph_->device(device), [](const auto& item) { return item.about.rateHz; });
    });
}

Status SimulatedAudioDevices::requestBufferFrames(AudioObjectID device, std::uint32_t frames) {
    const std::scoped_lock guard(graph_->mutex);
    if (const auto refusal = graph_->refusals.find(Operation::requestBufferFrames, device)) {
        return *refusal;
    }
    DeviceState* const found = graph_->isAvailable ? graph_->device(device) : nullptr;
    if (found == nullptr) {
        return statusNoSuchObject;
    }
    found->requestedFrames = frames;
    return statusOk;
}

std::optional<AudioObjectID> SimulatedAudioDevices::defaultOutputDevice() const {
    return read(*graph_, Operation::defaultOutputDevice, 0, [&] {
        const AudioObjectID device = graph_->defaultOutput;
        return device == 0 ? std::nullopt : std::optional(device);
    });
}

std::optional<Recorders> SimulatedAudioDevices::recorders(AudioObjectID device) const {
    return read(*graph_, Operation::recorders, device, [&] {
        return graph_->device(device) == nullptr ? std::nullopt
                                                 : std::optional(graph_->recorders(device));
    });
}

std::optional<DeviceVolume> SimulatedAudioDevices::recordingVolume(AudioObjectID device) const {
    return read(*graph_, Operation::recordingVolume, device, [&] {
        const DeviceState* const found = graph_->device(device);
        return found == nullptr ? std::nullopt : found->recordingVolume();
    });
}

Status SimulatedAudioDevices::setRecordingVolume(AudioObjectID device, const DeviceVolume& volume) {
    const std::scoped_lock guard(graph_->mutex);
    if (const auto refusal = graph_->refusals.find(Operation::setRecordingVolume, device)) {
        return *refusal;
    }
    DeviceState* const found = graph_->isAvailable ? graph_->device(device) : nullptr;
    if (found == nullptr || !found->recordingVolume()) {
        return statusNoSuchObject;
    }
    found->volume = volume;
    graph_->tellChanged();
    return statusOk;
}

} // namespace velmora
