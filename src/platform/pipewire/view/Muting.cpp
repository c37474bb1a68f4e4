#include "platform/pipewire/view/Muting.h"

#include "platform/pipewire/view/Devices.h"
#include "platform/pipewire/view/StreamTarget.h"

#include <algorithm>

namespace velmora::pipewire {
namespace {

bool isOutputDevice(const Node* node) {
    return node != nullptr &&
           (node->mediaClass == "Audio/Sink" || node->mediaClass == "Audio/Duplex");
}

/// Null when the stream plays to none.
const Node* sinkOf(const Graph& graph, Serial stream) {
    for (const auto& [serial, link] : graph.links()) {
        const Node* const sink = graph.node(link.inputNode);
        if (link.outputNode == stream && isOutputDevice(sink)) {
            return sink;
        }
    }
    return nullptr;
}

} // namespace

bool isMovableStream(const Node& stream) {
    return isPlaybackStream(stream) && stream.isMovable;
}

bool canBeMuted(const Graph& graph, const std::vector<Serial>& streams) {
    return std::ranges::all_of(streams, [&](Serial serial) {
        const Node* const stream = graph.node(serial);
        return stream == nullptr || !stream->isDescribed || isMovableStream(*stream);
    });
}

bool isHeard(const Graph& graph, Serial stream) {
    return sinkOf(graph, stream) != nullptr;
}

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

std::vector<Serial> leftLinks(const Graph& graph, Serial stream, Serial sink) {
    const auto& links = graph.links();
    const auto first = std::ranges::find_if(links, [&](const auto& entry) {
        return entry.second.outputNode == stream && entry.second.inputNode == sink;
    });
    std::vector<Serial> left;
    for (auto link = links.begin(); first != links.end() && link != first; ++link) {
        if (link->second.outputNode == stream && link->second.client == first->second.client &&
            isOutputDevice(graph.node(link->second.inputNode))) {
            left.push_back(link->first);
        }
    }
    return left;
}

} // namespace velmora::pipewire
