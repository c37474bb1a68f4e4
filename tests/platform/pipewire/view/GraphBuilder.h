// GraphBuilder.h: fills a graph as a daemon would.
#pragma once

#include "platform/pipewire/view/Graph.h"

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace velmora::pipewire {

/// The process of the mixer itself.
inline constexpr std::int32_t mixerPid = 1000;

/// Gives ids and serials in the order of the calls; an id equals its serial unless it is reused.
class GraphBuilder {
public:
    Serial addClient(const Properties& properties) {
        const Serial serial = next();
        graph.addClient(id(serial), {{"object.serial", std::to_string(serial)}});
        graph.describeClient(serial, properties);
        return serial;
    }

    /// A sound card; its nodes name it as their device.
    Serial addCard(const std::string& name) {
        const Serial serial = next();
        graph.addCard(id(serial),
                      {{"object.serial", std::to_string(serial)}, {"device.name", name}});
        return serial;
    }

    Serial addNode(const std::string& name,
                   const std::string& mediaClass,
                   Properties properties = {},
                   Serial client = 0) {
        const Serial serial = next();
        properties["node.name"] = name;
        properties["media.class"] = mediaClass;
        properties["object.serial"] = std::to_string(serial);
        if (client != 0) {
            properties["client.id"] = std::to_string(client);
        }
        graph.addNode(id(serial), properties);
        graph.describeNode(serial, properties);
        return serial;
    }

    Serial addPort(Serial node, const std::string& direction, int index, const std::string& name) {
        const Serial serial = next();
        graph.addPort(id(serial),
                      {{"object.serial", std::to_string(serial)},
                       {"node.id", std::to_string(node)},
                       {"port.id", std::to_string(index)},
                       {"port.direction", direction},
                       {"port.name", name},
                       {"audio.channel", name},
                       {"format.dsp", "32 bit float mono audio"}});
        return serial;
    }

    void addPorts(Serial node,
                  const std::string& direction,
                  std::initializer_list<std::string> channels) {
        int index = 0;
        for (const std::string& channel : channels) {
            addPort(node, direction, index++, channel);
        }
    }

    /// A node that plays, with one port per channel.
    Serial addStream(Serial client, std::initializer_list<std::string> channels) {
        const Serial node = addNode("stream", "Stream/Output/Audio", {}, client);
        addPorts(node, "out", channels);
        return node;
    }

    Serial addSink(const std::string& name, std::initializer_list<std::string> channels) {
        const Serial node = addNode(name, "Audio/Sink");
        addPorts(node, "in", channels);
        addPorts(node, "out", channels); // its monitors
        return node;
    }

    Serial addLink(Serial outputNode, Serial inputNode, Serial client = 0) {
        const Serial serial = next();
        graph.addLink(id(serial),
                      {{"object.serial", std::to_string(serial)},
                       {"client.id", std::to_string(client)},
                       {"link.output.node", std::to_string(outputNode)},
                       {"link.input.node", std::to_string(inputNode)}});
        return serial;
    }

    Serial addPortLink(const Port& output, const Port& input) {
        const Serial serial = next();
        graph.addLink(id(serial),
                      {{"object.serial", std::to_string(serial)},
                       {"link.output.port", std::to_string(output.id)},
                       {"link.input.port", std::to_string(input.id)}});
        return serial;
    }

    Serial addPortLink(Serial outputNode, const Port& output, Serial inputNode, const Port& input) {
        const Serial serial = next();
        graph.addLink(id(serial),
                      {{"object.serial", std::to_string(serial)},
                       {"link.output.node", std::to_string(outputNode)},
                       {"link.input.node", std::to_string(inputNode)},
                       {"link.output.port", std::to_string(output.id)},
                       {"link.input.port", std::to_string(input.id)}});
        return serial;
    }

    void setDefaultSink(const std::string& name) {
        graph.addMetadata(id(next()), "default");
        graph.setMetadata(
            "default",
            0,
            "default.audio.sink",
            MetadataValue{.type = "Spa:String:JSON", .value = R"({"name":")" + name + R"("})"});
    }

    static GlobalId id(Serial serial) { return static_cast<GlobalId>(serial); }

    Graph graph;

private:
    Serial next() { return ++last_; }
    Serial last_ = 40;
};

} // namespace velmora::pipewire
