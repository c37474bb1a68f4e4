#include "GuardedPlatform.h"

#include "RealTimeGuard.h"

#include "platform/AudioHardware.h"
#include "platform/AudioUnits.h"

#include <utility>

namespace velmora {
namespace {

class GuardedOutput final : public OutputUnit {
public:
    explicit GuardedOutput(std::unique_ptr<OutputUnit> real) : real_(std::move(real)) {}

    Status setDevice(AudioObjectID device) override { return real_->setDevice(device); }
    Status setChannelMap(std::span<const std::int32_t> map) override {
        return real_->setChannelMap(map);
    }
    double sampleRate() const override { return real_->sampleRate(); }
    Status start(RenderCallback render) override {
        return real_->start(
            [render = std::move(render)](std::int64_t frames, std::span<float* const> channels) {
                const RealTimeGuard guard;
                render(frames, channels);
            });
    }
    void stop() noexcept override { real_->stop(); }

private:
    std::unique_ptr<OutputUnit> real_;
};

class GuardedInput final : public InputUnit {
public:
    explicit GuardedInput(std::unique_ptr<InputUnit> real) : real_(std::move(real)) {}

    Status setDevice(AudioObjectID device) override { return real_->setDevice(device); }
    std::uint32_t channelCount() const override { return real_->channelCount(); }
    double sampleRate() const override { return real_->sampleRate(); }
    Status start(ReceiveCallback receive) override {
        return real_->start([receive = std::move(receive)](std::int64_t frames,
                                                           std::span<const float* const> channels) {
            const RealTimeGuard guard;
            receive(frames, channels);
        });
    }
    void stop() noexcept override { real_->stop(); }

private:
    std::unique_ptr<InputUnit> real_;
};

} // namespace

class GuardedPlatform::Units final : public AudioUnits {
public:
    explicit Units(AudioUnits& real) : real_(real) {}

    std::unique_ptr<OutputUnit> makeOutput() override {
        return std::make_unique<GuardedOutput>(real_.makeOutput());
    }
    std::unique_ptr<InputUnit> makeInput() override {
        return std::make_unique<GuardedInput>(real_.makeInput());
    }

private:
    AudioUnits& real_;
};

class GuardedPlatform::Hardware final : public AudioHardware {
public:
    using Ids = std::optional<std::vector<AudioObjectID>>;

    explicit Hardware(AudioHardware& real) : real_(real) {}

    StatusOr<IOProcID> createIOProc(AudioObjectID device, IOCallback callback) override {
        return real_.createIOProc(device,
                                  [callback = std::move(callback)](std::span<IOBuffer> buffers) {
                                      const RealTimeGuard guard;
                                      callback(buffers);
                                  });
    }

    bool isAvailable() const override { return real_.isAvailable(); }
    void onAvailabilityChange(std::function<void(bool)> listener) override {
        real_.onAvailabilityChange(std::move(listener));
    }
    std::uint32_t generation() const override { return real_.generation(); }
    Ids processObjects() const override { return real_.processObjects(); }
    std::optional<std::int32_t> processPid(AudioObjectID process) const override {
        return real_.processPid(process);
    }
    std::optional<bool> processIsRunningOutput(AudioObjectID process) const override {
        return real_.processIsRunningOutput(process);
    }
    std::optional<AudioObjectID> processForPid(std::int32_t pid) const override {
        return real_.processForPid(pid);
    }
    Ids devices() const override { return real_.devices(); }
    std::optional<std::string> deviceName(AudioObjectID device) const override {
        return real_.deviceName(device);
    }
    std::optional<std::string> deviceUID(AudioObjectID device) const override {
        return real_.deviceUID(device);
    }
    std::optional<std::vector<std::uint32_t>> streamChannels(AudioObjectID device,
                                                             Scope scope) const override {
        return real_.streamChannels(device, scope);
    }
    std::optional<Transport> transport(AudioObjectID device) const override {
        return real_.transport(device);
    }
    std::optional<double> nominalRate(AudioObjectID device) const override {
        return real_.nominalRate(device);
    }
    Status requestBufferFrames(AudioObjectID device, std::uint32_t frames) override {
        return real_.requestBufferFrames(device, frames);
    }
    std::optional<AudioObjectID> defaultOutputDevice() const override {
        return real_.defaultOutputDevice();
    }
    void onDefaultOutputChange(std::function<void()> listener) override {
        real_.onDefaultOutputChange(std::move(listener));
    }
    StatusOr<AudioObjectID> createTap(const TapDescription& description) override {
        return real_.createTap(description);
    }
    Status destroyTap(AudioObjectID tap) override { return real_.destroyTap(tap); }
    StatusOr<AudioObjectID> createAggregate(const AggregateDescription& description) override {
        return real_.createAggregate(description);
    }
    Status destroyAggregate(AudioObjectID device) override {
        return real_.destroyAggregate(device);
    }
    Status destroyIOProc(AudioObjectID device, IOProcID proc) override {
        return real_.destroyIOProc(device, proc);
    }
    Status startDevice(AudioObjectID device, IOProcID proc) override {
        return real_.startDevice(device, proc);
    }
    Status stopDevice(AudioObjectID device, IOProcID proc) override {
        return real_.stopDevice(device, proc);
    }

private:
    AudioHardware& real_;
};

GuardedPlatform::GuardedPlatform(const Platform& real)
    : real_(real), hardware_(std::make_unique<Hardware>(real.hardware)),
      units_(std::make_unique<Units>(real.units)) {
}

GuardedPlatform::~GuardedPlatform() = default;

Platform GuardedPlatform::platform() {
    return {.hardware = *hardware_,
            .units = *units_,
            .applications = real_.applications,
            .defaults = real_.defaults,
            .mainQueue = real_.mainQueue,
            .appearance = real_.appearance,
            .loginItem = real_.loginItem};
}

} // namespace velmora
