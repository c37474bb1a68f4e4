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
    auto node = session_.openNode<RecordingNode>({.name = route_->nodeName(),
                                                  .channels = target_->channels,
                                                  .blockFrames = target_->blockFrames,
                                                  .rateHz = target_->rateHz},
                                                 std::move(receive));
    if (!node) {
        route_.reset();
        return node.error();
    }
    node_ = *std::move(node);
    return statusOk;
}

void RecordingUnit::stop() noexcept {
    route_.reset();
    node_.reset();
}

} // namespace velmora::pipewire
