#include "capture/LastingKey.h"

#include "capture/DeviceQueries.h"

namespace velmora {
namespace {

std::string
keyOnDevice(const AudioDevices& devices, AudioObjectID device, std::optional<ChannelRange> range) {
    const auto uid = deviceUID(devices, device);
    return uid ? deviceKey(*uid, range) : std::string();
}

} // namespace

std::string appKey(std::string_view bundleID) {
    return bundleID.empty() ? std::string() : "app " + std::string(bundleID);
}

std::string deviceKey(std::string_view uid, std::optional<ChannelRange> range) {
    const std::string channels =
        range ? std::to_string(range->first) + "x" + std::to_string(range->count) : "all";
    return "device " + channels + " " + std::string(uid);
}

std::string lastingKey(const AudioDevices& devices, const AudioSource& source) {
    if (const AppSource* const app = source.app()) {
        return appKey(app->bundleID);
    }
    if (const DeviceSource* const device = source.device()) {
        return keyOnDevice(devices, device->id, std::nullopt);
    }
    const DeviceChannelsSource& channels = *source.deviceChannels();
    return keyOnDevice(
        devices, channels.id, ChannelRange{.first = channels.first, .count = channels.count});
}

} // namespace velmora
