#include "platform/pipewire/view/Muting.h"

#include "platform/pipewire/view/Devices.h"
#include "platform/pipewire/view/StreamTarget.h"

#include <algorithm>

namespace velmora::pipewire {
namespace {

/// Null when the stream plays to none.
const Node* sinkOf(const Graph& graph, Serial stream) {
    for (const auto& [serial, link] : graph.links()) {
        const Node* const sink = graph.node(link.inputNode);
        if (link.outputNode == stream && sink != nullptr && isOutputDevice(*sink)) {
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

bool knowsSessionManager(const Graph& graph, const std::vector<Serial>& streams) {
    return streams.empty() || std::ranges::any_of(streams, [&](Serial serial) {
               const Node* const stream = graph.node(serial);
               return stream == nullptr || isPlaybackStream(*stream);
           });
}

bool isAnyUndecoded(const Graph& graph, const std::vector<Serial>& streams) {
    return std::ranges::any_of(streams, [&](Serial serial) {
        const Node* const stream = graph.node(serial);
        if (stream == nullptr || !stream->isRunning) {
            return false;
        }
        const auto plays = [](const Port& port) { return port.isOutput; };
        const auto isMixable = [](const Port& port) { return port.isOutput && port.isAudio; };
        return std::ranges::any_of(stream->ports, plays) &&
               std::ranges::none_of(stream->ports, isMixable);
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
        const Node* const output = graph.node(link->second.inputNode);
        if (link->second.outputNode == stream && link->second.client == first->second.client &&
            output != nullptr && isOutputDevice(*output)) {
            left.push_back(link->first);
        }
    }
    return left;
}

} // namespace velmora::pipewire
