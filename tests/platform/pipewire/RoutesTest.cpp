#include "platform/pipewire/Routes.h"

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

    void addTapNode() {
        const Serial node = builder.addNode("tap", "");
        builder.addPorts(
            node, "in", {"left", "right", "centre", "surround_left", "surround_right"});
        builder.addPort(node, "out", 0, "sync");
        routes["tap"] = TapRoute{.process = process};
    }
    void addOutputNode(const std::string& name, PlaybackRoute route) {
        const Serial node = builder.addNode(name, "");
        builder.addPorts(node, "out", {"left", "right", "mono"});
        builder.addPort(node, "in", 0, "sync");
        routes[name] = std::move(route);
    }
    void addInputNode(RecordingRoute route) {
        const Serial node = builder.addNode("input", "");
        for (std::uint32_t at = 0; at < route.channels; ++at) {
            builder.addPort(node, "in", static_cast<int>(at), own::channel(at));
        }
        builder.addPort(node, "out", 0, "sync");
        routes["input"] = std::move(route);
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

    GraphBuilder builder;
    Routes routes;
    std::vector<Serial> streams;
};

TEST_F(RoutesTest, ConnectsATapToEveryStreamOfItsProcess) {
    addTapNode();
    streams = {builder.addStream(0, {"FL", "FR"}), builder.addStream(0, {"MONO"})};

    EXPECT_THAT(links(),
                UnorderedElementsAre(Ends("stream:FL", "tap:left"),
                                     Ends("stream:FR", "tap:right"),
                                     Ends("stream:MONO", "tap:left"),
                                     Ends("stream:MONO", "tap:right")));
}

TEST_F(RoutesTest, ConnectsAnOutputToTheFirstPairOfItsDevice) {
    builder.addSink("interface", {"AUX0", "AUX1", "AUX2", "AUX3"});
    addOutputNode("output", {.deviceUID = "interface", .map = {0, 1}});

    EXPECT_THAT(links(),
                UnorderedElementsAre(Ends("output:left", "interface:AUX0"),
                                     Ends("output:right", "interface:AUX1")));
}

TEST_F(RoutesTest, ConnectsAnOutputToTheChannelsOfItsMap) {
    builder.addSink("interface", {"AUX0", "AUX1", "AUX2", "AUX3"});
    addOutputNode("output", {.deviceUID = "interface", .map = {-1, -1, 0, 1}});

    EXPECT_THAT(links(),
                UnorderedElementsAre(Ends("output:left", "interface:AUX2"),
                                     Ends("output:right", "interface:AUX3")));
}

TEST_F(RoutesTest, PlaysAPairInMonoToASingleChannel) {
    builder.addSink("headset", {"MONO"});
    addOutputNode("output", {.deviceUID = "headset", .map = {0, 1}});

    EXPECT_THAT(links(), UnorderedElementsAre(Ends("output:mono", "headset:MONO")));
}

TEST_F(RoutesTest, KeepsToAMapOfASingleChannel) {
    builder.addSink("headset", {"MONO"});
    addOutputNode("output", {.deviceUID = "headset", .map = {1}});

    EXPECT_THAT(links(), UnorderedElementsAre(Ends("output:right", "headset:MONO")));
}

TEST_F(RoutesTest, NeverConnectsAnOutputToAnotherDevice) {
    builder.addSink("speakers", {"FL", "FR"});
    addOutputNode("output", {.deviceUID = "headset", .map = {0, 1}});

    EXPECT_THAT(links(), IsEmpty());
}

TEST_F(RoutesTest, ConnectsAnOutputAgainWhenItsDeviceReturns) {
    const Serial before = builder.addSink("headset", {"FL", "FR"});
    addOutputNode("output", {.deviceUID = "headset", .map = {0, 1}});
    builder.graph.remove(GraphBuilder::id(before));
    EXPECT_THAT(links(), IsEmpty());

    builder.addSink("headset", {"FL", "FR"});

    EXPECT_EQ(links().size(), 2U);
}

TEST_F(RoutesTest, ConnectsAnInputToItsDevicesChannelsInOrder) {
    const Serial device = builder.addNode("interface", "Audio/Source");
    builder.addPorts(device, "out", {"AUX0", "AUX1"});
    addInputNode({.deviceUID = "interface", .channels = 2});

    EXPECT_THAT(links(),
                UnorderedElementsAre(Ends("interface:AUX0", "input:channel_1"),
                                     Ends("interface:AUX1", "input:channel_2")));
}

TEST_F(RoutesTest, ConnectsAnInputToWhatItsDeviceStillHas) {
    const Serial device = builder.addNode("interface", "Audio/Source");
    builder.addPorts(device, "out", {"AUX0"});
    addInputNode({.deviceUID = "interface", .channels = 2});

    EXPECT_THAT(links(), UnorderedElementsAre(Ends("interface:AUX0", "input:channel_1")));
}

TEST_F(RoutesTest, PutsEveryCaptureBeforeEveryOutput) {
    addTapNode();
    addInputNode({.deviceUID = "absent", .channels = 1});
    addOutputNode("stream", {.deviceUID = "absent", .map = {0, 1}});
    addOutputNode("monitor", {.deviceUID = "absent", .map = {0, 1}});

    EXPECT_THAT(links(),
                UnorderedElementsAre(Ends("tap:sync", "stream:sync"),
                                     Ends("tap:sync", "monitor:sync"),
                                     Ends("input:sync", "stream:sync"),
                                     Ends("input:sync", "monitor:sync")));
}

TEST_F(RoutesTest, WantsNothingForANodeThatIsNotThereYet) {
    builder.addSink("speakers", {"FL", "FR"});
    routes["output"] = PlaybackRoute{.deviceUID = "speakers", .map = {0, 1}};

    EXPECT_THAT(links(), IsEmpty());
}

} // namespace
} // namespace velmora::pipewire
