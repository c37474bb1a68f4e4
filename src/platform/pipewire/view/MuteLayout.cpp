#include "platform/pipewire/view/MuteLayout.h"

#include "platform/pipewire/view/Devices.h"

namespace velmora::pipewire {
namespace {

const Node* sinkOf(const Graph& graph, Serial stream) {
    for (const auto& [serial, link] : graph.links()) {
        const Node* const sink = graph.node(link.inputNode);
        const bool isSink = sink != nullptr && (sink->mediaClass == "Audio/Sink" ||
                                                sink->mediaClass == "Audio/Duplex");
        if (link.outputNode == stream && isSink) {
            return sink;
        }
    }
    return nullptr;
}

} // namespace

std::string targetLayout(const Graph& graph, const std::vector<Serial>& streams) {
    const Node* sink = graph.nodeNamed(graph.defaultSinkName().value_or(""));
    for (const Serial stream : streams) {
        if (const Node* const target = sinkOf(graph, stream)) {
            sink = target;
            break;
        }
    }
    std::string layout = "[";
    for (const Port& port : sink == nullptr ? std::vector<Port>{} : playbackPorts(*sink)) {
        layout += (layout.size() == 1 ? "" : ",") + port.channel;
    }
    return layout.size() == 1 ? "[FL,FR]" : layout + "]";
}

} // namespace velmora::pipewire
