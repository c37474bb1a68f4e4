#include "platform/pipewire/keep/VirtualMicrophone.h"

#include "platform/PublicSinks.h"
#include "platform/pipewire/view/Devices.h"

#include <algorithm>
#include <cctype>
#include <string_view>

namespace velmora::pipewire {
namespace {

constexpr std::string_view microphoneNode = "velmora.mic"; // as in the packaged fragment

bool hasMicrophoneWord(std::string_view name) {
    const auto found = std::ranges::search(name, virtualMicrophoneWord, [](char one, char two) {
        return std::tolower(static_cast<unsigned char>(one)) == two;
    });
    return !found.empty();
}

bool isMicrophone(const Node& node) {
    const bool isDevice =
        node.mediaClass.starts_with("Audio/") && node.mediaClass != "Audio/Sink/Internal";
    return node.name == microphoneNode ||
           (isDevice && node.name != dawSinkUID && hasMicrophoneWord(node.description));
}

/// Also while it has no ports yet: a daemon makes its own devices before their ports, and a second
/// microphone of the same name would be the result of not waiting.
bool isKnown(const Graph& graph) {
    return std::ranges::any_of(graph.nodes(),
                               [](const auto& entry) { return isMicrophone(entry.second); });
}

} // namespace

bool hasVirtualMicrophone(const Graph& graph) {
    return std::ranges::any_of(listDevices(graph), [](const Device& device) {
        return device.uid != dawSinkUID && device.outputs > 0 && hasMicrophoneWord(device.name);
    });
}

void VirtualMicrophone::follow() {
    if (!isWanted_) {
        return;
    }
    const bool isThere = isKnown(graph_);
    if (!isThere && isSeen_) {
        made_.reset(); // somebody removed it
    }
    if (!isThere && !made_) {
        made_ = connection_.create("adapter",
                                   PW_TYPE_INTERFACE_Node,
                                   PW_VERSION_NODE,
                                   {{"factory.name", "support.null-audio-sink"},
                                    {"media.class", "Audio/Source/Virtual"},
                                    {"node.name", std::string(microphoneNode)},
                                    {"node.description", "Velmora Microphone"},
                                    {"audio.position", "[FL,FR]"},
                                    {"node.virtual", "true"},
                                    // What is recorded follows its volume and mute.
                                    {"monitor.channel-volumes", "true"},
                                    // As the clock it would add a block of delay to everything.
                                    {"priority.driver", "1"},
                                    // Never the default microphone by itself.
                                    {"priority.session", "1"},
                                    {"object.linger", "true"}});
    }
    isSeen_ = isThere;
}

void VirtualMicrophone::renew() {
    if (const Node* const old = graph_.nodeNamed(microphoneNode)) {
        connection_.destroyGlobal(old->id);
        isWanted_ = true;
    }
}

void VirtualMicrophone::clear() {
    made_.reset();
    isSeen_ = false;
}

} // namespace velmora::pipewire
