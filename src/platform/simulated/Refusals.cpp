#include "platform/simulated/Refusals.h"

namespace velmora {

void Refusals::refuse(Operation operation, Status status, AudioObjectID object) {
    statuses_[{operation, object}] = status;
}

void Refusals::allow(Operation operation, AudioObjectID object) {
    statuses_.erase({operation, object});
}

std::optional<Status> Refusals::find(Operation operation, AudioObjectID object) const {
    for (const AudioObjectID key : {object, AudioObjectID{0}}) {
        if (const auto found = statuses_.find({operation, key}); found != statuses_.end()) {
            return found->second;
        }
    }
    return std::nullopt;
}

} // namespace velmora
