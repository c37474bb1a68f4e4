#include "platform/pipewire/RecordingUnit.h"

namespace velmora::pipewire {

Status RecordingUnit::setDevice(AudioObjectID device) {
    auto target = findTarget(session_, device, Scope::input);
    if (!target) {
        return target.error();
    }
    target_ = *std::move(target);
    return statusOk;
}

Status RecordingUnit::start(ReceiveCallback receive) {
    stop();
    if (const Status status = checkTarget(session_, target_, Scope::input); status != statusOk) {
        return status;
    }
    route_.emplace(session_,
                   "input",
                   RecordingRoute{.deviceUID = target_->uid, .channels = target_->channels});
    auto part = session_.openPart<RecordingPart>(
        {.name = route_->partName(), .channels = target_->channels},
        target_->blockFrames,
        target_->rateHz,
        std::move(receive));
    if (!part) {
        route_.reset();
        return part.error();
    }
    part_ = *std::move(part);
    return statusOk;
}

void RecordingUnit::stop() noexcept {
    route_.reset();
    part_.reset();
}

} // namespace velmora::pipewire
