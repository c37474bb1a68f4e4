#include "platform/pipewire/SessionSinks.h"

#include "platform/pipewire/view/Devices.h"

#include <algorithm>
#include <cerrno>

namespace velmora::pipewire {

StatusOr<AudioObjectID> SessionSinks::create(const PublicSink& sink) {
    const PublicAggregate aggregate{
        .uid = sink.uid, .name = sink.name, .members = {sink.masterUID, sink.followerUID}};
    const bool areAllThere = session_.read([&](SessionState& state, bool isAvailable) {
        const auto devices = listDevices(state.graph);
        return isAvailable && std::ranges::all_of(aggregate.members, [&](const std::string& uid) {
                   return findDevice(devices, uid).has_value();
               });
    });
    if (!areAllThere || aggregate.uid.empty()) {
        return std::unexpected(areAllThere ? -EINVAL : -ENODEV);
    }
    if (const Status status = session_.createAggregate(aggregate); status != statusOk) {
        return std::unexpected(status);
    }
    return session_.read(
        [&](SessionState& state, bool) { return state.ids.ofDevice(aggregate.uid); });
}

Status SessionSinks::remove(AudioObjectID sink) {
    const auto uid = session_.aggregateUID(sink);
    return uid ? session_.destroyAggregate(*uid) : -ENODEV;
}

} // namespace velmora::pipewire
