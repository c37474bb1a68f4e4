#include "platform/pipewire/view/StreamTarget.h"

#include <algorithm>

namespace velmora::pipewire {

const Node* deviceNamed(const Graph& graph, std::string_view name) {
    const auto found = std::ranges::find_if(graph.nodes(), [name](const auto& one) {
        return one.second.name == name && !isPlaybackStream(one.second);
    });
    return found == graph.nodes().end() ? nullptr : &found->second;
}

const Node* targetOf(const Graph& graph, std::string_view key, const MetadataValue& value) {
    const auto named = number({{"value", value.value}}, "value");
    if (!named) {
        return nullptr;
    }
    return key == targetObjectKey ? graph.node(*named)
                                  : graph.nodeWithId(static_cast<GlobalId>(*named));
}

} // namespace velmora::pipewire
