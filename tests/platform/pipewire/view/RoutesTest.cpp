#include "platform/pipewire/view/Routes.h"

#include "platform/pipewire/view/Downmix.h"

#include "GraphBuilder.h"

#include <gmock/gmock.h>
#include <utility>

namespace velmora::pipewire {
namespace {

using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr AudioObjectID process = 3;

/// Finds links by the names of their ends: "node:port".
class RoutesTest : public testing::Test {
protected:
    using Ends = std::pair<std::string, std::string>;

    void addTap() { add("in", tapInputCount, TapRoute{.process = process}); }
    void addOutput(PlaybackRoute route) { add("out", playbackPortCount, std::move(route)); }
    void addInput(std::size_t channels, std::size_t first = 0) {
        add("in", channels, RecordingRoute{.deviceUID = "interface", .first = first});
    }
    /// A part of the mix; our node comes with the first.
    void add(const std::string& direction, std::size_t ports, Route route) {
        if (mixNode == 0) {
            mixNode = builder.addNode("mix", "");
        }
        PartPorts names{.node = "mix", .names = {}};
        for (std::size_t at = 0; at < ports; ++at) {
            names.names.push_back(direction + std::to_string(++portsAdded));
            builder.addPort(mixNode, direction, portsAdded, names.names.back());
        }
        routes[routes.size()] = {.ports = std::move(names), .route = std::move(route)};
    }

    std::vector<Ends> links() {
        std::vector<Ends> found;
        for (const WantedLink& link :
             wantedLinks(builder.graph, routes, [this](AudioObjectID) { return streams; })) {
            found.emplace_back(nameOf(link.output), nameOf(link.input));
        }
        return found;
    }

    std::string nameOf(Serial serial) {
        for (const auto& [nodeSerial, node] : builder.graph.nodes()) {
            for (const Port& port : node.ports) {
                if (port.serial == serial) {
                    return node.name + ":" + port.name;
                }
            }
        }
        return "unknown";
    }

    Serial mixNode = 0; // none yet
    int portsAdded = 0;
    GraphBuilder builder;
    Routes routes;
    std::vector<Serial> streams;
};

TEST_F(RoutesTest, ConnectsATapToEveryStreamOfItsProcess) {
    addTap();
    streams = {builder.addStream(0, {"FL", "FR"}), builder.addStream(0, {"MONO"})};

    EXPECT_THAT(links(),
                UnorderedElementsAre(Ends("stream:FL", "mix:in1"),
                                     Ends("stream:FR", "mix:in2"),
                                     Ends("stream:MONO", "mix:in1"),
                                     Ends("stream:MONO", "mix:in2")));
}

TEST_F(RoutesTest, ConnectsAnOutputToTheFirstPairOfItsDevice) {
    builder.addSink("interface", {"AUX0", "AUX1", "AUX2", "AUX3"});
    addOutput({.deviceUID = "interface", .map = {0, 1}});

    EXPECT_THAT(links(),
                UnorderedElementsAre(Ends("mix:out1", "interface:AUX0"),
                                     Ends("mix:out2", "interface:AUX1")));
}

TEST_F(RoutesTest, ConnectsAnOutputToTheChannelsOfItsMap) {
    builder.addSink("interface", {"AUX0", "AUX1", "AUX2", "AUX3"});
    addOutput({.deviceUID = "interface", .map = {-1, -1, 0, 1}});

    EXPECT_THAT(links(),
                UnorderedElementsAre(Ends("mix:out1", "interface:AUX2"),
                                     Ends("mix:out2", "interface:AUX3")));
}

TEST_F(RoutesTest, PlaysAPairInMonoToASingleChannel) {
    builder.addSink("headset", {"MONO"});
    addOutput({.deviceUID = "headset", .map = {0, 1}});

    EXPECT_THAT(links(), UnorderedElementsAre(Ends("mix:out3", "headset:MONO")));
}

TEST_F(RoutesTest, KeepsToAMapOfASingleChannel) {
    builder.addSink("headset", {"MONO"});
    addOutput({.deviceUID = "headset", .map = {1}});

    EXPECT_THAT(links(), UnorderedElementsAre(Ends("mix:out2", "headset:MONO")));
}

TEST_F(RoutesTest, NeverConnectsAnOutputToAnotherDevice) {
    builder.addSink("speakers", {"FL", "FR"});
    addOutput({.deviceUID = "headset", .map = {0, 1}});

    EXPECT_THAT(links(), IsEmpty());
}

TEST_F(RoutesTest, ConnectsAnOutputAgainWhenItsDeviceReturns) {
    const Serial before = builder.addSink("headset", {"FL", "FR"});
    addOutput({.deviceUID = "headset", .map = {0, 1}});
    builder.graph.remove(GraphBuilder::id(before));
    EXPECT_THAT(links(), IsEmpty());

    builder.addSink("headset", {"FL", "FR"});

    EXPECT_EQ(links().size(), 2U);
}

TEST_F(RoutesTest, ConnectsAnInputToItsDevicesChannelsInOrder) {
    const Serial device = builder.addNode("interface", "Audio/Source");
    builder.addPorts(device, "out", {"AUX0", "AUX1"});
    addInput(2);

    EXPECT_THAT(
        links(),
        UnorderedElementsAre(Ends("interface:AUX0", "mix:in1"), Ends("interface:AUX1", "mix:in2")));
}

TEST_F(RoutesTest, ConnectsAnInputToTheChannelsThatItUses) {
    const Serial device = builder.addNode("interface", "Audio/Source");
    builder.addPorts(device, "out", {"AUX0", "AUX1", "AUX2", "AUX3"});
    addInput(2, 2);

    EXPECT_THAT(
        links(),
        UnorderedElementsAre(Ends("interface:AUX2", "mix:in1"), Ends("interface:AUX3", "mix:in2")));
}

TEST_F(RoutesTest, ConnectsAnInputToWhatItsDeviceStillHas) {
    const Serial device = builder.addNode("interface", "Audio/Source");
    builder.addPorts(device, "out", {"AUX0"});
    addInput(2);

    EXPECT_THAT(links(), UnorderedElementsAre(Ends("interface:AUX0", "mix:in1")));
}

TEST_F(RoutesTest, WantsNothingForAPartThatHasNoPortsYet) {
    builder.addSink("speakers", {"FL", "FR"});
    addTap();
    routes[9] = {.ports = {.node = "mix", .names = {"out1", "out2", "out3"}},
                 .route = PlaybackRoute{.deviceUID = "speakers", .map = {0, 1}}};

    EXPECT_THAT(links(), IsEmpty());
}

TEST_F(RoutesTest, WantsNothingForANodeThatIsNotThereYet) {
    builder.addSink("speakers", {"FL", "FR"});
    routes[9] = {.ports = {.node = "mix", .names = {"out1", "out2", "out3"}},
                 .route = PlaybackRoute{.deviceUID = "speakers", .map = {0, 1}}};

    EXPECT_THAT(links(), IsEmpty());
}

TEST_F(RoutesTest, KnowsAPartThatIsLinkedByAnybody) {
    const Serial speakers = builder.addSink("speakers", {"FL", "FR"});
    addOutput({.deviceUID = "speakers", .map = {0, 1}});
    const PartPorts& ports = routes[0].ports;
    EXPECT_FALSE(areLinked(builder.graph, ports));

    const Serial link = builder.addPortLink(builder.graph.node(mixNode)->ports[1],
                                            builder.graph.node(speakers)->ports[0]);
    EXPECT_TRUE(areLinked(builder.graph, ports));

    builder.graph.remove(GraphBuilder::id(link));
    EXPECT_FALSE(areLinked(builder.graph, ports));
}

} // namespace
} // namespace velmora::pipewire
