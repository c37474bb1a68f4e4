#include "platform/pipewire/RecordingUnit.h"

#include <cerrno>

namespace velmora::pipewire {

Status RecordingUnit::setDevice(AudioObjectID device) {
    if (part_) {
        return -EBUSY;
    }
    auto target = findTarget(session_, device, Scope::input);
    if (!target) {
        return target.error();
    }
    target_ = *std::move(target);
    return statusOk;
}

Status RecordingUnit::start(ReceiveCallback receive) {
    if (part_) {
        return -EBUSY;
    }
    if (!receive) {
        return -EINVAL;
    }
    if (const Status status = checkTarget(session_, target_, Scope::input); status != statusOk) {
        return status;
    }
    auto part = session_.openPart<RecordingPart>(
        target_->blockFrames, target_->rateHz, target_->channels, std::move(receive));
    if (!part) {
        return part.error();
    }
    part_ = *std::move(part);
    route_.emplace(session_, part_->part(), RecordingRoute{.deviceUID = target_->uid});
    return statusOk;
}

void RecordingUnit::stop() noexcept {
    route_.reset();
    part_.reset();
}

bool RecordingUnit::isAlive() const {
    return isOfThisConnection(session_, target_) && (!part_ || part_->isAlive());
}

} // namespace velmora::pipewire
