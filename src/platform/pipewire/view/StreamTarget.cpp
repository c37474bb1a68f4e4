#include "platform/pipewire/view/StreamTarget.h"

namespace velmora::pipewire {

const Node* targetOf(const Graph& graph, std::string_view key, const MetadataValue& value) {
    const auto named = number({{"value", value.value}}, "value");
    if (!named) {
        return nullptr;
    }
    return key == targetObjectKey ? graph.node(*named)
                                  : graph.nodeWithId(static_cast<GlobalId>(*named));
}

} // namespace velmora::pipewire
