#include "platform/pipewire/daemon/NodeVolume.h"

#include <pipewire/pipewire.h>
#include <spa/param/audio/raw.h>
#include <spa/param/props.h>
#include <spa/pod/builder.h>
#include <spa/pod/iter.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <vector>

namespace velmora::pipewire {
namespace {

using ChannelVolumes = std::array<float, SPA_AUDIO_MAX_CHANNELS>; // linear

float loudest(const spa_pod_prop& property) {
    ChannelVolumes volumes{};
    const std::uint32_t count =
        spa_pod_copy_array(&property.value, SPA_TYPE_Float, volumes.data(), volumes.size());
    return *std::max_element(volumes.begin(), volumes.begin() + std::max(count, 1U));
}

} // namespace

std::optional<DeviceVolume> readVolume(const spa_pod& properties) {
    if (!spa_pod_is_object_type(&properties, SPA_TYPE_OBJECT_Props)) {
        return std::nullopt;
    }
    const spa_pod_prop* const volumes =
        spa_pod_find_prop(&properties, nullptr, SPA_PROP_channelVolumes);
    const spa_pod_prop* const mute = spa_pod_find_prop(&properties, nullptr, SPA_PROP_mute);
    bool isMuted = false;
    if (volumes == nullptr || mute == nullptr || spa_pod_get_bool(&mute->value, &isMuted) < 0) {
        return std::nullopt;
    }
    return DeviceVolume{.linear = loudest(*volumes), .isMuted = isMuted};
}

Status requestVolume(Connection& connection,
                     GlobalId node,
                     std::uint32_t channels,
                     const DeviceVolume& volume) {
    const auto proxy = connection.bindGlobal(node, PW_TYPE_INTERFACE_Node, PW_VERSION_NODE);
    if (!proxy) {
        return -EHOSTDOWN;
    }
    const std::uint32_t count = std::min<std::uint32_t>(channels, SPA_AUDIO_MAX_CHANNELS);
    const std::vector<float> volumes(count, volume.linear);
    std::array<std::uint8_t, 1024> storage{};
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, storage.data(), storage.size());
    const auto* const properties = static_cast<const spa_pod*>(spa_pod_builder_add_object(
        &builder,
        SPA_TYPE_OBJECT_Props,
        SPA_PARAM_Props,
        SPA_PROP_mute,
        SPA_POD_Bool(volume.isMuted),
        SPA_PROP_channelVolumes,
        SPA_POD_Array(sizeof(float), SPA_TYPE_Float, count, volumes.data())));
    const int answer =
        pw_node_set_param(reinterpret_cast<pw_node*>(proxy.get()), SPA_PARAM_Props, 0, properties);
    return std::min<Status>(answer, statusOk); // above it is the number of the request
}

} // namespace velmora::pipewire
