// SimulatedAudioHardware.h: the simulated machine's devices, processes and taps.
#pragma once

#include "platform/AudioHardware.h"
#include "platform/MainQueue.h"
#include "platform/simulated/SimulatedSound.h"

#include <memory>

namespace velmora {

class SimulatedAudioHardware : public AudioHardware {
public:
    /// Default-output changes of `sound` are told on `mainQueue`.
    SimulatedAudioHardware(SimulatedSound& sound, MainQueue& mainQueue);

    [[nodiscard]] bool isAvailable() const override;
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

private:
    std::shared_ptr<SoundGraph> graph_;
    MainQueue& mainQueue_;
};

} // namespace velmora
