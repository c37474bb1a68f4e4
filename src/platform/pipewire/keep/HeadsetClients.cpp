#include "platform/pipewire/keep/HeadsetClients.h"

#include "platform/pipewire/view/Devices.h"

#include <set>
#include <variant>

namespace velmora::pipewire {

void HeadsetClients::follow(const Routes& routes) {
    std::set<Serial> wanted;
    for (const auto& [id, part] : routes) {
        const auto* const route = std::get_if<RecordingRoute>(&part.route);
        const auto device =
            route == nullptr ? std::nullopt : findDevice(listDevices(graph_), route->deviceUID);
        if (device && device->isBluetooth) {
            wanted.insert(device->node);
        }
    }
    std::erase_if(clients_, [&](const auto& one) { return !wanted.contains(one.first); });
    for (const Serial microphone : wanted) {
        auto& client = clients_[microphone];
        if (!client) {
            client = connection_.create("adapter",
                                        PW_TYPE_INTERFACE_Node,
                                        PW_VERSION_NODE,
                                        {{"factory.name", "support.null-audio-sink"},
                                         {"media.class", "Stream/Input/Audio"},
                                         {"node.name", newName_()},
                                         {"node.description", "Velmora"},
                                         {"media.name", "Velmora"},
                                         {"audio.position", "[MONO]"},
                                         {"target.object", graph_.node(microphone)->name},
                                         {"node.autoconnect", "true"},
                                         // Never another microphone.
                                         {"node.dont-reconnect", "true"},
                                         {"state.restore-props", "false"},
                                         {"state.restore-target", "false"},
                                         {"node.virtual", "true"},
                                         {"priority.driver", "0"}});
        }
    }
}

} // namespace velmora::pipewire
