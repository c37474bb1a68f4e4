#include "platform/pipewire/Routes.h"

#include "platform/pipewire/Devices.h"
#include "platform/pipewire/Downmix.h"

#include <algorithm>
#include <array>

namespace velmora::pipewire {
namespace {

constexpr std::array<std::string_view, 5> tapPorts = {
    own::left, own::right, own::centre, own::surroundLeft, own::surroundRight};

const Port* portNamed(const Node& node, std::string_view name) {
    const auto found = std::ranges::find(node.ports, name, &Port::name);
    return found == node.ports.end() ? nullptr : &*found;
}

const Node* deviceNamed(const Graph& graph, std::string_view uid) {
    const auto device = findDevice(listDevices(graph), uid);
    return device ? graph.node(device->node) : nullptr;
}

/// Collects the links of one of our nodes after the other.
class Collector {
public:
    Collector(const Graph& graph, const StreamsOf& streamsOf)
        : graph_(graph), streamsOf_(streamsOf) {}

    void add(const Node& node, const TapRoute& route) {
        for (const Serial serial : streamsOf_(route.process)) {
            const Node* const stream = graph_.node(serial);
            for (const TapFeed& feed :
                 stream == nullptr ? std::vector<TapFeed>{} : stereoMixdown(*stream)) {
                const auto input = static_cast<std::size_t>(feed.input);
                if (const Port* const port = portNamed(node, tapPorts.at(input))) {
                    links.insert({feed.port, port->serial, feed.portId, port->id});
                }
            }
        }
        sources_.push_back(portNamed(node, own::sync));
    }

    void add(const Node& node, const PlaybackRoute& route) {
        destinations_.push_back(portNamed(node, own::sync));
        if (const Node* const device = deviceNamed(graph_, route.deviceUID)) {
            const auto channels = playbackPorts(*device);
            if (channels.size() == 1 && route.map.size() > 1) {
                connect(portNamed(node, own::mono), &channels.front());
                return;
            }
            for (std::size_t at = 0; at < std::min(channels.size(), route.map.size()); ++at) {
                if (route.map[at] == 0 || route.map[at] == 1) {
                    connect(portNamed(node, route.map[at] == 0 ? own::left : own::right),
                            &channels[at]);
                }
            }
        }
    }

    void add(const Node& node, const RecordingRoute& route) {
        if (const Node* const device = deviceNamed(graph_, route.deviceUID)) {
            const auto channels = recordingPorts(*device);
            for (std::uint32_t at = 0; at < route.channels && at < channels.size(); ++at) {
                connect(&channels[at], portNamed(node, own::channel(at)));
            }
        }
        sources_.push_back(portNamed(node, own::sync));
    }

    void addSync() {
        for (const Port* const source : sources_) {
            for (const Port* const destination : destinations_) {
                connect(source, destination);
            }
        }
    }

    std::set<WantedLink> links;

private:
    void connect(const Port* output, const Port* input) {
        if (output != nullptr && input != nullptr) {
            links.insert({output->serial, input->serial, output->id, input->id});
        }
    }

    const Graph& graph_;
    const StreamsOf& streamsOf_;
    std::vector<const Port*> sources_;
    std::vector<const Port*> destinations_;
};

} // namespace

std::string own::channel(std::uint32_t index) {
    return "channel_" + std::to_string(index + 1);
}

std::set<WantedLink>
wantedLinks(const Graph& graph, const Routes& routes, const StreamsOf& streamsOf) {
    Collector collector(graph, streamsOf);
    for (const auto& [name, route] : routes) {
        if (const Node* const node = graph.nodeNamed(name)) {
            std::visit([&](const auto& one) { collector.add(*node, one); }, route);
        }
    }
    collector.addSync();
    return std::move(collector.links);
}

} // namespace velmora::pipewire
