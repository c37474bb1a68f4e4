#include "platform/pipewire/view/Devices.h"

#include "platform/PublicSinks.h"

#include <algorithm>
#include <array>

namespace velmora::pipewire {
namespace {

constexpr std::string_view sinkClass = "Audio/Sink";
constexpr std::array<std::string_view, 4> deviceClasses = {
    sinkClass, "Audio/Source", "Audio/Source/Virtual", "Audio/Duplex"};

std::vector<Port> audioPorts(const Node& node, bool outputs) {
    std::vector<Port> ports;
    std::ranges::copy_if(node.ports, std::back_inserter(ports), [outputs](const Port& port) {
        return port.isAudio && port.isOutput == outputs;
    });
    return ports;
}

Transport transportOf(const Node& node) {
    if (node.name == dawSinkUID || node.linkGroup.starts_with("combine")) {
        return Transport::aggregate;
    }
    return node.isHardware ? Transport::other : Transport::virtualDevice;
}

} // namespace

std::vector<Port> playbackPorts(const Node& device) {
    return audioPorts(device, false);
}

std::vector<Port> recordingPorts(const Node& device) {
    return device.mediaClass == sinkClass ? std::vector<Port>{} : audioPorts(device, true);
}

std::optional<Device> findDevice(const std::vector<Device>& devices, std::string_view uid) {
    const auto found = std::ranges::find(devices, uid, &Device::uid);
    return found == devices.end() ? std::nullopt : std::optional(*found);
}

std::optional<Device> defaultOutput(const Graph& graph) {
    const Node* const sink = graph.nodeNamed(graph.defaultSinkName().value_or(""));
    return sink == nullptr ? std::nullopt : findDevice(listDevices(graph), sink->uid);
}

std::vector<Device> listDevices(const Graph& graph) {
    std::vector<Device> devices;
    for (const auto& [serial, node] : graph.nodes()) {
        const bool isDevice =
            node.isDescribed && !node.uid.empty() &&
            std::ranges::find(deviceClasses, node.mediaClass) != deviceClasses.end();
        if (!isDevice || std::ranges::find(devices, node.uid, &Device::uid) != devices.end()) {
            continue;
        }
        devices.push_back({.node = serial,
                           .uid = node.uid,
                           .name = node.description,
                           .inputs = static_cast<std::uint32_t>(recordingPorts(node).size()),
                           .outputs = static_cast<std::uint32_t>(playbackPorts(node).size()),
                           .transport = transportOf(node),
                           .isBluetooth = node.isBluetooth,
                           .volume = node.volume});
    }
    std::ranges::stable_partition(devices, [](const Device& one) { return one.uid != dawSinkUID; });
    return devices;
}

} // namespace velmora::pipewire
