// SessionDevices.h: AudioDevices on PipeWire.
#pragma once

#include "platform/AudioDevices.h"
#include "platform/pipewire/Session.h"

namespace velmora::pipewire {

/// Whoever owns the session emits the signals. Threads: main.
class SessionDevices final : public AudioDevices {
public:
    explicit SessionDevices(Session& session) : session_(session) {}

    [[nodiscard]] bool isAvailable() const override { return session_.isAvailable(); }

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
    Session& session_;
};

} // namespace velmora::pipewire
