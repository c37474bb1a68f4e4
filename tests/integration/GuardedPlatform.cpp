#include "GuardedPlatform.h"

#include "RealTimeGuard.h"

#include "platform/ApplicationTaps.h"
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
    bool isAlive() const override { return real_->isAlive(); }

private:
    std::unique_ptr<OutputUnit> real_;
};

class GuardedInput final : public InputUnit {
public:
    explicit GuardedInput(std::unique_ptr<InputUnit> real) : real_(std::move(real)) {}

    Status setDevice(AudioObjectID device) override { return real_->setDevice(device); }
    std::uint32_t channelCount() const override { return real_->channelCount(); }
    Status setChannels(std::uint32_t first, std::uint32_t count) override {
        return real_->setChannels(first, count);
    }
    double sampleRate() const override { return real_->sampleRate(); }
    Status start(ReceiveCallback receive) override {
        return real_->start([receive = std::move(receive)](std::int64_t frames,
                                                           std::span<const float* const> channels) {
            const RealTimeGuard guard;
            receive(frames, channels);
        });
    }
    void stop() noexcept override { real_->stop(); }
    bool isAlive() const override { return real_->isAlive(); }

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
    void askForBlocksOf(std::uint32_t leastFrames) override { real_.askForBlocksOf(leastFrames); }
    BlockReport blocks() const override { return real_.blocks(); }

private:
    AudioUnits& real_;
};

class GuardedPlatform::Taps final : public ApplicationTaps {
public:
    explicit Taps(ApplicationTaps& real) : real_(real) {}

    std::optional<std::vector<AudioObjectID>> processObjects() const override {
        return real_.processObjects();
    }
    std::optional<std::int32_t> processPid(AudioObjectID process) const override {
        return real_.processPid(process);
    }
    std::optional<bool> processIsRunningOutput(AudioObjectID process) const override {
        return real_.processIsRunningOutput(process);
    }
    std::optional<AudioObjectID> processForPid(std::int32_t pid) const override {
        return real_.processForPid(pid);
    }
    std::optional<ApplicationSound> sound(AudioObjectID process) const override {
        return real_.sound(process);
    }
    std::optional<double> tapRate() const override { return real_.tapRate(); }
    std::expected<std::unique_ptr<ApplicationTap>, TapRefusal>
    open(AudioObjectID process, Mute mute, float divisor, TapCallback callback) override {
        return real_.open(
            process, mute, divisor, [callback = std::move(callback)](const TapBlock& block) {
                const RealTimeGuard guard;
                callback(block);
            });
    }

private:
    ApplicationTaps& real_;
};

GuardedPlatform::GuardedPlatform(const Platform& real)
    : real_(real), taps_(std::make_unique<Taps>(real.taps)),
      units_(std::make_unique<Units>(real.units)) {
}

GuardedPlatform::~GuardedPlatform() = default;

Platform GuardedPlatform::platform() {
    return {.devices = real_.devices,
            .taps = *taps_,
            .sinks = real_.sinks,
            .units = *units_,
            .applications = real_.applications,
            .defaults = real_.defaults,
            .mainQueue = real_.mainQueue,
            .appearance = real_.appearance,
            .loginItem = real_.loginItem,
            .shortcuts = real_.shortcuts,
            .notices = real_.notices};
}

} // namespace velmora
