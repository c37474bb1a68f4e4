#include "platform/pipewire/Units.h"

#include "platform/pipewire/RunningPart.h"
#include "platform/pipewire/node/PlaybackPart.h"
#include "platform/pipewire/node/RecordingPart.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velmora::pipewire {
namespace {

/// The device that a unit was pointed at.
struct UnitTarget {
    AudioObjectID id{};
    std::string uid;
    std::uint32_t channels{}; ///< in the unit's direction, never 0
    Session::Wish wish;
};

/// Errors: the status when the device is not there or has no channels in this direction.
StatusOr<UnitTarget> findTarget(Session& session, AudioObjectID id, Scope scope) {
    return session.read([&](SessionState& state, bool isAvailable) -> StatusOr<UnitTarget> {
        if (!isAvailable) {
            return std::unexpected(-EHOSTDOWN);
        }
        const auto device = state.device(id);
        if (!device) {
            return std::unexpected(-ENODEV);
        }
        const std::uint32_t channels = scope == Scope::input ? device->inputs : device->outputs;
        if (channels == 0) {
            return std::unexpected(-ENXIO);
        }
        const auto asked = state.blockFrames.find(id);
        return UnitTarget{.id = id,
                          .uid = device->uid,
                          .channels = channels,
                          .wish = {.blockFrames = asked == state.blockFrames.end()
                                                      ? usualBlockFrames
                                                      : asked->second,
                                   .rateHz = state.rate.hz()}};
    });
}

/// Hz, as blocks come now; 0 without a target.
double blockRate(Session& session, const std::optional<UnitTarget>& target) {
    if (!target) {
        return 0.0;
    }
    return session.read([&](SessionState& state, bool isAvailable) {
        return isAvailable ? state.rate.hz() : target->wish.rateHz;
    });
}

/// Looks again, because the device may have gone since the unit was pointed at it.
Status checkTarget(Session& session, const std::optional<UnitTarget>& target, Scope scope) {
    if (!target) {
        return -ENODEV;
    }
    const auto found = findTarget(session, target->id, scope);
    return found ? statusOk : found.error();
}

class PlaybackUnit final : public OutputUnit {
public:
    explicit PlaybackUnit(Session& session) : session_(session), part_(session) {}

    Status setDevice(AudioObjectID device) override;
    Status setChannelMap(std::span<const std::int32_t> map) override;
    [[nodiscard]] double sampleRate() const override { return blockRate(session_, target_); }
    Status start(RenderCallback render) override;
    void stop() noexcept override { part_.stop(); }
    [[nodiscard]] bool isAlive() const override { return part_.isAlive(); }

private:
    Session& session_;
    std::optional<UnitTarget> target_;
    std::vector<std::int32_t> map_;
    RunningPart<PlaybackPart> part_;
};

Status PlaybackUnit::setDevice(AudioObjectID device) {
    if (part_.isRunning()) {
        return -EBUSY;
    }
    auto target = findTarget(session_, device, Scope::output);
    if (!target) {
        return target.error();
    }
    target_ = *std::move(target);
    map_ = {0, 1};
    return statusOk;
}

Status PlaybackUnit::setChannelMap(std::span<const std::int32_t> map) {
    if (!target_) {
        return -ENODEV;
    }
    if (part_.isRunning()) {
        return -EBUSY;
    }
    const bool isValid = map.size() == target_->channels &&
                         std::ranges::all_of(map, [](auto at) { return at >= -1 && at <= 1; });
    if (!isValid) {
        return -EINVAL;
    }
    map_.assign(map.begin(), map.end());
    return statusOk;
}

Status PlaybackUnit::start(RenderCallback render) {
    if (part_.isRunning()) {
        return -EBUSY;
    }
    if (!render) {
        return -EINVAL;
    }
    if (const Status status = checkTarget(session_, target_, Scope::output); status != statusOk) {
        return status;
    }
    return part_.start(
        target_->wish, PlaybackRoute{.deviceUID = target_->uid, .map = map_}, std::move(render));
}

class RecordingUnit final : public InputUnit {
public:
    explicit RecordingUnit(Session& session) : session_(session), part_(session) {}

    Status setDevice(AudioObjectID device) override;
    [[nodiscard]] std::uint32_t channelCount() const override {
        return target_ ? target_->channels : 0;
    }
    Status setChannels(std::uint32_t first, std::uint32_t count) override;
    [[nodiscard]] double sampleRate() const override { return blockRate(session_, target_); }
    Status start(ReceiveCallback receive) override;
    void stop() noexcept override { part_.stop(); }
    [[nodiscard]] bool isAlive() const override { return part_.isAlive(); }

private:
    Session& session_;
    std::optional<UnitTarget> target_;
    std::uint32_t first_ = 0;
    std::uint32_t count_ = 0;
    RunningPart<RecordingPart> part_;
};

Status RecordingUnit::setDevice(AudioObjectID device) {
    if (part_.isRunning()) {
        return -EBUSY;
    }
    auto target = findTarget(session_, device, Scope::input);
    if (!target) {
        return target.error();
    }
    target_ = *std::move(target);
    first_ = 0;
    count_ = target_->channels;
    return statusOk;
}

Status RecordingUnit::setChannels(std::uint32_t first, std::uint32_t count) {
    if (part_.isRunning()) {
        return -EBUSY;
    }
    if (count == 0 || first >= channelCount() || count > channelCount() - first) {
        return -EINVAL;
    }
    first_ = first;
    count_ = count;
    return statusOk;
}

Status RecordingUnit::start(ReceiveCallback receive) {
    if (part_.isRunning()) {
        return -EBUSY;
    }
    if (!receive) {
        return -EINVAL;
    }
    if (const Status status = checkTarget(session_, target_, Scope::input); status != statusOk) {
        return status;
    }
    return part_.start(target_->wish,
                       RecordingRoute{.deviceUID = target_->uid, .first = first_},
                       count_,
                       std::move(receive));
}

} // namespace

std::unique_ptr<OutputUnit> Units::makeOutput() {
    return std::make_unique<PlaybackUnit>(session_);
}

std::unique_ptr<InputUnit> Units::makeInput() {
    return std::make_unique<RecordingUnit>(session_);
}

} // namespace velmora::pipewire
