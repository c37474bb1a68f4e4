#include "platform/simulated/Refusals.h"

namespace velmora {

void Refusals::refuse(Operation operation, Status status, AudioObjectID object) {
    statuses_[{operation, object}] = status;
}

void Refusals::allow(Operation operation, AudioObjectID object) {
    statuses_.erase({operation, object});
}

std::optional<Status> Refusals::find(Operation operation, AudioObjectID object) {
    for (const AudioObjectID key : {object, AudioObjectID{0}}) {
        if (const auto found = statuses_.find({operation, key}); found != statuses_.end()) {
            ++given_[operation];
            return found->second;
        }
    }
    return std::nullopt;
}

std::size_t Refusals::given(Operation operation) const {
    const auto found = given_.find(operation);
    return found == given_.end() ? 0 : found->second;
}

} // namespace velmora
