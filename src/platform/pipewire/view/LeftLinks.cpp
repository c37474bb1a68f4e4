#include "platform/pipewire/view/LeftLinks.h"

#include <algorithm>

namespace velmora::pipewire {

std::vector<Serial> leftLinks(const Graph& graph, Serial stream, Serial sink) {
    const auto& links = graph.links();
    const auto first = std::ranges::find_if(links, [&](const auto& entry) {
        return entry.second.outputNode == stream && entry.second.inputNode == sink;
    });
    std::vector<Serial> left;
    for (auto link = links.begin(); first != links.end() && link != first; ++link) {
        if (link->second.outputNode == stream && link->second.client == first->second.client) {
            left.push_back(link->first);
        }
    }
    return left;
}

} // namespace velmora::pipewire
