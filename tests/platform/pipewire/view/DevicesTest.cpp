#include "platform/pipewire/view/Devices.h"

#include "GraphBuilder.h"

#include <gmock/gmock.h>

namespace velmora::pipewire {
namespace {

using testing::ElementsAre;

std::vector<std::string> uids(const Graph& graph) {
    std::vector<std::string> all;
    for (const Device& device : listDevices(graph)) {
        all.push_back(device.uid);
    }
    return all;
}

Transport transportOf(const std::string& name, const Properties& properties) {
    GraphBuilder builder;
    builder.addNode(name, "Audio/Sink", properties);
    return listDevices(builder.graph).at(0).transport;
}

TEST(Devices, ListsTheFourDeviceClassesInOrderOfAppearance) {
    GraphBuilder builder;
    builder.addNode("duplex", "Audio/Duplex");
    builder.addNode("source", "Audio/Source");
    builder.addNode("sink", "Audio/Sink");
    builder.addNode("microphone", "Audio/Source/Virtual");
    builder.addNode("hidden", "Audio/Sink/Internal");
    builder.addNode("player", "Stream/Output/Audio");
    builder.addNode("camera", "Video/Source");

    EXPECT_THAT(uids(builder.graph), ElementsAre("duplex", "source", "sink", "microphone"));
}

TEST(Devices, ListsTheDawDeviceLast) {
    GraphBuilder builder;
    builder.addNode("app.velmora.daw.aggregate", "Audio/Sink");
    builder.addNode("sink", "Audio/Sink");

    EXPECT_THAT(uids(builder.graph), ElementsAre("sink", "app.velmora.daw.aggregate"));
}

TEST(Devices, ListsOneOfTwoNodesWithTheSameName) {
    GraphBuilder builder;
    const Serial first = builder.addNode("sink", "Audio/Sink");
    builder.addNode("sink", "Audio/Sink");

    const auto devices = listDevices(builder.graph);

    ASSERT_EQ(devices.size(), 1U);
    EXPECT_EQ(devices[0].node, first);
}

TEST(Devices, KnowsBluetoothHeadsetsAndWhatStandsForTheirMicrophones) {
    GraphBuilder builder;
    builder.addNode("bluez_output.1", "Audio/Sink", {{"device.api", "bluez5"}});
    builder.addNode("bluez_input.1", "Audio/Source", {{"bluez5.loopback", "true"}});
    builder.addNode("microphone", "Audio/Source");

    const auto devices = listDevices(builder.graph);

    EXPECT_TRUE(devices.at(0).isBluetooth);
    EXPECT_TRUE(devices.at(1).isBluetooth);
    EXPECT_FALSE(devices.at(2).isBluetooth);
}

TEST(Devices, CountsMonitorsOfASinkAsNoInputs) {
    GraphBuilder builder;
    builder.addSink("sink", {"FL", "FR", "FC", "LFE"});

    const Device device = listDevices(builder.graph).at(0);

    EXPECT_EQ(device.outputs, 4U);
    EXPECT_EQ(device.inputs, 0U);
}

TEST(Devices, CountsBothDirectionsOfAVirtualSource) {
    GraphBuilder builder;
    const Serial node = builder.addNode("microphone", "Audio/Source/Virtual");
    builder.addPorts(node, "in", {"FL", "FR"});
    builder.addPorts(node, "out", {"FL", "FR"});

    const Device device = listDevices(builder.graph).at(0);

    EXPECT_EQ(device.outputs, 2U);
    EXPECT_EQ(device.inputs, 2U);
}

TEST(Devices, OrdersChannelsByPortNumberWhateverCameFirst) {
    GraphBuilder builder;
    const Serial node = builder.addNode("interface", "Audio/Duplex");
    const Serial second = builder.addPort(node, "in", 1, "AUX1");
    const Serial first = builder.addPort(node, "in", 0, "AUX0");

    const auto ports = playbackPorts(*builder.graph.node(node));

    ASSERT_EQ(ports.size(), 2U);
    EXPECT_EQ(ports[0].serial, first);
    EXPECT_EQ(ports[1].serial, second);
}

TEST(Devices, LooksForTheNameUnderDescriptionThenNickThenNodeName) {
    GraphBuilder builder;
    builder.addNode("a", "Audio/Sink", {{"node.description", "Speakers"}, {"node.nick", "spk"}});
    builder.addNode("b", "Audio/Sink", {{"node.nick", "Headset"}});
    builder.addNode("c", "Audio/Sink");

    const auto devices = listDevices(builder.graph);

    EXPECT_EQ(devices.at(0).name, "Speakers");
    EXPECT_EQ(devices.at(1).name, "Headset");
    EXPECT_EQ(devices.at(2).name, "c");
}

TEST(Devices, TellsHardwareFromVirtualAndAggregateDevices) {
    const Properties hardware{{"device.id", "31"}, {"device.api", "alsa"}};

    EXPECT_EQ(transportOf("card", hardware), Transport::other);
    EXPECT_EQ(transportOf("null", {{"factory.name", "support.null-audio-sink"}}),
              Transport::virtualDevice);
    EXPECT_EQ(transportOf("loopback", {{"node.link-group", "loopback-2"}}),
              Transport::virtualDevice);
    EXPECT_EQ(transportOf("combined", {{"node.link-group", "combine-stream-7"}}),
              Transport::aggregate);
    EXPECT_EQ(transportOf("app.velmora.daw.aggregate", {}), Transport::aggregate);
}

TEST(Devices, WaitsForADevicesProperties) {
    Graph graph;
    graph.addNode(50, {{"node.name", "sink"}, {"media.class", "Audio/Sink"}});

    EXPECT_TRUE(listDevices(graph).empty());
}

} // namespace
} // namespace velmora::pipewire
