// Hardware.h: AudioHardware on PipeWire.
#pragma once

#include "platform/AudioHardware.h"
#include "platform/pipewire/ApplicationResolver.h"
#include "platform/pipewire/Session.h"
#include "platform/pipewire/TapDevices.h"

#include <functional>
#include <string>
#include <vector>

namespace velmora::pipewire {

/// Threads: main.
class Hardware final : public AudioHardware {
public:
    Hardware(Session& session, ApplicationResolver& applications)
        : session_(session), applications_(applications), taps_(session) {}

    [[nodiscard]] bool isAvailable() const override { return session_.isAvailable(); }
    void onAvailabilityChange(std::function<void(bool isAvailable)> listener) override;
    [[nodiscard]] std::uint32_t generation() const override;

    [[nodiscard]] std::optional<std::vector<AudioObjectID>> processObjects() const override;
    [[nodiscard]] std::optional<std::int32_t> processPid(AudioObjectID process) const override;
    [[nodiscard]] std::optional<bool> processIsRunningOutput(AudioObjectID process) const override;
    [[nodiscard]] std::optional<AudioObjectID> processForPid(std::int32_t pid) const override;

    [[nodiscard]] std::optional<std::vector<AudioObjectID>> devices() const override;
    [[nodiscard]] std::optional<std::string> deviceName(AudioObjectID device) const override;
    [[nodiscard]] std::optional<std::string> deviceUID(AudioObjectID device) const override;
    [[nodiscard]] std::optional<std::vector<std::uint32_t>>
    streamChannels(AudioObjectID device, Scope scope) const override;
    [[nodiscard]] std::optional<Transport> transport(AudioObjectID device) const override;
    [[nodiscard]] std::optional<double> nominalRate(AudioObjectID device) const override;
    Status requestBufferFrames(AudioObjectID device, std::uint32_t frames) override;

    [[nodiscard]] std::optional<AudioObjectID> defaultOutputDevice() const override;
    void onDefaultOutputChange(std::function<void()> listener) override;

    StatusOr<AudioObjectID> createTap(const TapDescription& description) override;
    Status destroyTap(AudioObjectID tap) override;
    StatusOr<AudioObjectID> createAggregate(const AggregateDescription& description) override;
    Status destroyAggregate(AudioObjectID device) override;
    StatusOr<IOProcID> createIOProc(AudioObjectID device, IOCallback callback) override;
    Status destroyIOProc(AudioObjectID device, IOProcID proc) override;
    Status startDevice(AudioObjectID device, IOProcID proc) override;
    Status stopDevice(AudioObjectID device, IOProcID proc) override;

    // These tell the listeners.
    void availabilityChanged(bool isAvailable) const;
    void defaultOutputChanged() const;

private:
    StatusOr<AudioObjectID> createPublicDevice(const AggregateDescription& description);

    Session& session_;
    ApplicationResolver& applications_;
    std::vector<std::function<void(bool)>> availabilityListeners_;
    std::function<void()> defaultOutputListener_;
    TapDevices taps_;
};

} // namespace velmora::pipewire
