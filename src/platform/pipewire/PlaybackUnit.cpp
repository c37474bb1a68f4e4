#include "platform/pipewire/PlaybackUnit.h"

#include <algorithm>
#include <cerrno>

namespace velmora::pipewire {

Status PlaybackUnit::setDevice(AudioObjectID device) {
    if (part_) {
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
    if (part_) {
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
    if (part_) {
        return -EBUSY;
    }
    if (!render) {
        return -EINVAL;
    }
    if (const Status status = checkTarget(session_, target_, Scope::output); status != statusOk) {
        return status;
    }
    auto part =
        session_.openPart<PlaybackPart>(target_->blockFrames, target_->rateHz, std::move(render));
    if (!part) {
        return part.error();
    }
    part_ = *std::move(part);
    route_.emplace(session_, part_->part(), PlaybackRoute{.deviceUID = target_->uid, .map = map_});
    return statusOk;
}

void PlaybackUnit::stop() noexcept {
    route_.reset();
    part_.reset();
}

bool PlaybackUnit::isAlive() const {
    return isOfThisConnection(session_, target_) && (!part_ || part_->isAlive());
}

} // namespace velmora::pipewire
