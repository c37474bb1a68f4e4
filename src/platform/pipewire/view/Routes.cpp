#include "platform/pipewire/view/Routes.h"

#include "platform/pipewire/view/Devices.h"
#include "platform/pipewire/view/Downmix.h"

#include <algorithm>
#include <functional>

namespace velmora::pipewire {
namespace {

const Node* deviceNamed(const Graph& graph, std::string_view uid) {
    const auto device = findDevice(listDevices(graph), uid);
    return device ? graph.node(device->node) : nullptr;
}

/// The ports in the part's order; null where the daemon has not told of one yet.
std::vector<const Port*> find(const Graph& graph, const PartPorts& wanted) {
    std::vector<const Port*> ports(wanted.names.size());
    if (const Node* const node = graph.nodeNamed(wanted.node)) {
        for (std::size_t at = 0; at < ports.size(); ++at) {
            const auto found = std::ranges::find(node->ports, wanted.names[at], &Port::name);
            ports[at] = found == node->ports.end() ? nullptr : &*found;
        }
    }
    return ports;
}

/// Collects the links of one part of the mix after the other.
class Collector {
public:
    using Ports = std::vector<const Port*>;

    Collector(const Graph& graph, const StreamsOf& streamsOf)
        : graph_(graph), streamsOf_(streamsOf) {}

    void add(const Ports& ports, const TapRoute& route) {
        for (const Serial serial : streamsOf_(route.process)) {
            const Node* const stream = graph_.node(serial);
            for (const TapFeed& feed :
                 stream == nullptr ? std::vector<TapFeed>{} : stereoMixdown(graph_, *stream)) {
                if (const Port* const port = ports.at(static_cast<std::size_t>(feed.input))) {
                    links.insert({feed.port, port->serial, feed.portId, port->id});
                }
            }
        }
    }

    void add(const Ports& ports, const PlaybackRoute& route) {
        const auto from = [&](PlaybackPort port) {
            return ports.at(static_cast<std::size_t>(port));
        };
        if (const Node* const device = deviceNamed(graph_, route.deviceUID)) {
            const auto channels = playbackPorts(*device);
            if (channels.size() == 1 && route.map.size() > 1) {
                connect(from(PlaybackPort::mono), &channels.front());
                return;
            }
            for (std::size_t at = 0; at < std::min(channels.size(), route.map.size()); ++at) {
                if (route.map[at] == 0 || route.map[at] == 1) {
                    connect(from(route.map[at] == 0 ? PlaybackPort::left : PlaybackPort::right),
                            &channels[at]);
                }
            }
        }
    }

    void add(const Ports& ports, const RecordingRoute& route) {
        if (const Node* const device = deviceNamed(graph_, route.deviceUID)) {
            const auto channels = recordingPorts(*device);
            for (std::size_t at = 0; at < ports.size() && route.first + at < channels.size();
                 ++at) {
                connect(&channels[route.first + at], ports[at]);
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
};

} // namespace

std::set<WantedLink>
wantedLinks(const Graph& graph, const Routes& routes, const StreamsOf& streamsOf) {
    Collector collector(graph, streamsOf);
    for (const auto& [id, part] : routes) {
        const auto ports = find(graph, part.ports);
        std::visit([&](const auto& one) { collector.add(ports, one); }, part.route);
    }
    return std::move(collector.links);
}

bool areLinked(const Graph& graph, const PartPorts& ports) {
    return std::ranges::any_of(find(graph, ports), [&](const Port* port) {
        return port != nullptr && std::ranges::any_of(graph.links(), [port](const auto& link) {
                   return link.second.outputPort == port->serial ||
                          link.second.inputPort == port->serial;
               });
    });
}

} // namespace velmora::pipewire
