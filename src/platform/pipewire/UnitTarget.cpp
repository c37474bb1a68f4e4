#include "platform/pipewire/UnitTarget.h"

#include <cerrno>

namespace velmora::pipewire {

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
                          .blockFrames =
                              asked == state.blockFrames.end() ? usualBlockFrames : asked->second,
                          .rateHz = state.rate.hz(),
                          .epoch = state.epoch};
    });
}

bool isOfThisConnection(Session& session, const std::optional<UnitTarget>& target) {
    return !target ||
           session.read([&](SessionState& state, bool) { return state.epoch == target->epoch; });
}

Status checkTarget(Session& session, const std::optional<UnitTarget>& target, Scope scope) {
    if (!target || !isOfThisConnection(session, target)) {
        return -ENODEV;
    }
    const auto found = findTarget(session, target->id, scope);
    return found ? statusOk : found.error();
}

} // namespace velmora::pipewire
