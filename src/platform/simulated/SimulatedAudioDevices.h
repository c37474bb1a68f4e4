// SimulatedAudioDevices.h: the simulated machine's audio service and devices.
#pragma once

#include "platform/AudioDevices.h"
#include "platform/MainQueue.h"
#include "platform/simulated/SimulatedSound.h"

#include <memory>

namespace velmora {

class SimulatedAudioDevices : public AudioDevices {
public:
    /// What happens to `sound` is told on `mainQueue`.
    SimulatedAudioDevices(SimulatedSound& sound, MainQueue& mainQueue);

    [[nodiscard]] bool isAvailable() const override;

    [[nodiscard]] std::optional<std::vector<AudioObjectID>> devices() const override;
    [[nodiscard]] std::optional<std::string> deviceName(AudioObjectID device) const override;
    [[nodiscard]] std::optional<std::string> deviceUID(AudioObjectID device) const override;
    [[nodiscard]] std::optional<std::vector<std::uint32_t>>
    streamChannels(AudioObjectID device, Scope scope) const override;
    [[nodiscard]] std::optional<Transport> transport(AudioObjectID device) const override;
    [[nodiscard]] bool isBluetooth(AudioObjectID device) const override;
    [[nodiscard]] std::optional<double> nominalRate(AudioObjectID device) const override;
    Status requestBufferFrames(AudioObjectID device, std::uint32_t frames) override;
    [[nodiscard]] std::optional<AudioObjectID> defaultOutputDevice() const override;
    [[nodiscard]] std::optional<Recorders> recorders(AudioObjectID device) const override;
    [[nodiscard]] std::optional<DeviceVolume> recordingVolume(AudioObjectID device) const override;
    Status setRecordingVolume(AudioObjectID device, const DeviceVolume& volume) override;

private:
    void postChanged();
    void emitChanged();

    std::shared_ptr<SoundGraph> graph_;
    MainQueue& mainQueue_;
    bool isChangeDue_ = false; // guarded by the graph's lock
};

} // namespace velmora
