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

    void addTap() {
        addPorts("in", "tap", {"left", "right", "centre", "surround_left", "surround_right"});
        routes["tap"] = TapRoute{.process = process};
    }
    void addOutput(const std::string& name, PlaybackRoute route) {
        addPorts("out", name, {"left", "right", "mono"});
        routes[name] = std::move(route);
    }
    void addInput(RecordingRoute route) {
        for (std::uint32_t at = 0; at < route.channels; ++at) {
            addPorts("in", "input", {own::channel(at)});
        }
        routes["input"] = std::move(route);
    }
    /// Ports of a part of the mix; our node comes with the first.
    void addPorts(const std::string& direction,
                  const std::string& part,
                  const std::vector<std::string>& names) {
        if (mixNode == 0) {
            mixNode = builder.addNode("mix", "");
        }
        for (const std::string& name : names) {
            builder.addPort(mixNode, direction, portsAdded++, part + "_" + name);
        }
    }

    std::vector<Ends> links() {
        std::vector<Ends> found;
        for (const WantedLink& link :
             wantedLinks(builder.graph, "mix", routes, [this](AudioObjectID) { return streams; })) {
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
                UnorderedElementsAre(Ends("stream:FL", "mix:tap_left"),
                                     Ends("stream:FR", "mix:tap_right"),
                                     Ends("stream:MONO", "mix:tap_left"),
                                     Ends("stream:MONO", "mix:tap_right")));
}

TEST_F(RoutesTest, ConnectsAnOutputToTheFirstPairOfItsDevice) {
    builder.addSink("interface", {"AUX0", "AUX1", "AUX2", "AUX3"});
    addOutput("output", {.deviceUID = "interface", .map = {0, 1}});

    EXPECT_THAT(links(),
                UnorderedElementsAre(Ends("mix:output_left", "interface:AUX0"),
                                     Ends("mix:output_right", "interface:AUX1")));
}

TEST_F(RoutesTest, ConnectsAnOutputToTheChannelsOfItsMap) {
    builder.addSink("interface", {"AUX0", "AUX1", "AUX2", "AUX3"});
    addOutput("output", {.deviceUID = "interface", .map = {-1, -1, 0, 1}});

    EXPECT_THAT(links(),
                UnorderedElementsAre(Ends("mix:output_left", "interface:AUX2"),
                                     Ends("mix:output_right", "interface:AUX3")));
}

TEST_F(RoutesTest, PlaysAPairInMonoToASingleChannel) {
    builder.addSink("headset", {"MONO"});
    addOutput("output", {.deviceUID = "headset", .map = {0, 1}});

    EXPECT_THAT(links(), UnorderedElementsAre(Ends("mix:output_mono", "headset:MONO")));
}

TEST_F(RoutesTest, KeepsToAMapOfASingleChannel) {
    builder.addSink("headset", {"MONO"});
    addOutput("output", {.deviceUID = "headset", .map = {1}});

    EXPECT_THAT(links(), UnorderedElementsAre(Ends("mix:output_right", "headset:MONO")));
}

TEST_F(RoutesTest, NeverConnectsAnOutputToAnotherDevice) {
    builder.addSink("speakers", {"FL", "FR"});
    addOutput("output", {.deviceUID = "headset", .map = {0, 1}});

    EXPECT_THAT(links(), IsEmpty());
}

TEST_F(RoutesTest, ConnectsAnOutputAgainWhenItsDeviceReturns) {
    const Serial before = builder.addSink("headset", {"FL", "FR"});
    addOutput("output", {.deviceUID = "headset", .map = {0, 1}});
    builder.graph.remove(GraphBuilder::id(before));
    EXPECT_THAT(links(), IsEmpty());

    builder.addSink("headset", {"FL", "FR"});

    EXPECT_EQ(links().size(), 2U);
}

TEST_F(RoutesTest, ConnectsAnInputToItsDevicesChannelsInOrder) {
    const Serial device = builder.addNode("interface", "Audio/Source");
    builder.addPorts(device, "out", {"AUX0", "AUX1"});
    addInput({.deviceUID = "interface", .channels = 2});

    EXPECT_THAT(links(),
                UnorderedElementsAre(Ends("interface:AUX0", "mix:input_channel_1"),
                                     Ends("interface:AUX1", "mix:input_channel_2")));
}

TEST_F(RoutesTest, ConnectsAnInputToWhatItsDeviceStillHas) {
    const Serial device = builder.addNode("interface", "Audio/Source");
    builder.addPorts(device, "out", {"AUX0"});
    addInput({.deviceUID = "interface", .channels = 2});

    EXPECT_THAT(links(), UnorderedElementsAre(Ends("interface:AUX0", "mix:input_channel_1")));
}

TEST_F(RoutesTest, WantsNothingForAPartThatHasNoPortsYet) {
    builder.addSink("speakers", {"FL", "FR"});
    addTap();
    routes["output"] = PlaybackRoute{.deviceUID = "speakers", .map = {0, 1}};

    EXPECT_THAT(links(), IsEmpty());
}

TEST_F(RoutesTest, WantsNothingForANodeThatIsNotThereYet) {
    builder.addSink("speakers", {"FL", "FR"});
    routes["output"] = PlaybackRoute{.deviceUID = "speakers", .map = {0, 1}};

    EXPECT_THAT(links(), IsEmpty());
}

} // namespace
} // namespace velmora::pipewire
