#include "platform/pipewire/view/Recording.h"

#include "platform/pipewire/view/Devices.h"

#include <algorithm>
#include <set>

namespace velmora::pipewire {
namespace {

bool isRecorder(const Graph& graph, const ProcessDirectory& processes, const Node& node) {
    const auto client = graph.clients().find(node.client);
    const bool isOurs = client != graph.clients().end() && processes.isOurs(client->second);
    return node.isDescribed && node.isRunning && !node.isMeter && !isOurs;
}

void add(Recorders& recorders, AudioObjectID process) {
    recorders.areAny = true;
    const auto place = std::ranges::lower_bound(recorders.processes, process);
    const bool isKnown = place != recorders.processes.end() && *place == process;
    if (process != 0 && !isKnown) {
        recorders.processes.insert(place, process);
    }
}

} // namespace

std::map<Serial, Recorders> recordedDevices(const Graph& graph, const ProcessDirectory& processes) {
    std::set<Serial> devices;
    for (const Device& device : listDevices(graph)) {
        if (device.inputs > 0) {
            devices.insert(device.node);
        }
    }
    std::map<Serial, Recorders> recorded;
    for (const auto& [serial, link] : graph.links()) {
        const Node* const node = graph.node(link.inputNode);
        if (devices.contains(link.outputNode) && node != nullptr &&
            isRecorder(graph, processes, *node)) {
            add(recorded[link.outputNode], processes.objectOfClient(node->client));
        }
    }
    return recorded;
}

} // namespace velmora::pipewire
