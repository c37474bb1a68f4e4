#include "platform/pipewire/view/Downmix.h"

#include "GraphBuilder.h"

#include <gmock/gmock.h>
#include <utility>

namespace velmora::pipewire {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using enum TapInput;
using Feeds = std::vector<std::pair<std::string, TapInput>>; // channel and where it goes

Feeds feeds(std::vector<std::string> content, std::initializer_list<std::string> channels) {
    GraphBuilder builder;
    const Serial stream = builder.addStream(0, channels);
    builder.graph.setContent(stream, std::move(content));
    const Node& node = *builder.graph.node(stream);
    Feeds found;
    for (const TapFeed& feed : stereoMixdown(builder.graph, node)) {
        for (const Port& port : node.ports) {
            if (port.serial == feed.port) {
                found.emplace_back(port.channel, feed.input);
            }
        }
    }
    return found;
}

TEST(Downmix, TakesTheFrontPairOfAStereoStream) {
    EXPECT_THAT(feeds({"FL", "FR"}, {"FL", "FR"}),
                ElementsAre(std::pair("FL", left), std::pair("FR", right)));
}

TEST(Downmix, BringsAMonoStreamToBothSides) {
    EXPECT_THAT(feeds({"MONO"}, {"MONO"}),
                ElementsAre(std::pair("MONO", left), std::pair("MONO", right)));
}

TEST(Downmix, BringsMonoMaterialOnNumberedChannelsToBothSides) {
    EXPECT_THAT(feeds({"MONO"}, {"AUX0", "AUX1"}),
                ElementsAre(std::pair("AUX0", left), std::pair("AUX0", right)));
}

TEST(Downmix, IgnoresCopiesOfStereoMaterialOnALargerSink) {
    EXPECT_THAT(feeds({"FL", "FR"}, {"FL", "FR", "FC", "LFE", "RL", "RR"}),
                ElementsAre(std::pair("FL", left), std::pair("FR", right)));
}

TEST(Downmix, MixesSurroundMaterialWithoutItsLfeChannel) {
    EXPECT_THAT(feeds({"FL", "FR", "FC", "LFE", "RL", "RR"}, {"FL", "FR", "FC", "LFE", "RL", "RR"}),
                ElementsAre(std::pair("FL", left),
                            std::pair("FR", right),
                            std::pair("FC", centre),
                            std::pair("RL", surroundLeft),
                            std::pair("RR", surroundRight)));
}

TEST(Downmix, IgnoresSurroundChannelsThatAreCopiesOfOthers) {
    EXPECT_THAT(feeds({"FL", "FR", "RL", "RR"}, {"FL", "FR", "SL", "SR", "RL", "RR"}),
                ElementsAre(std::pair("FL", left),
                            std::pair("FR", right),
                            std::pair("RL", surroundLeft),
                            std::pair("RR", surroundRight)));
}

TEST(Downmix, FindsSideMaterialInTheRearChannelsOfASinkWithoutSides) {
    EXPECT_THAT(feeds({"FL", "FR", "SL", "SR"}, {"FL", "FR", "RL", "RR"}),
                ElementsAre(std::pair("FL", left),
                            std::pair("FR", right),
                            std::pair("RL", surroundLeft),
                            std::pair("RR", surroundRight)));
}

TEST(Downmix, LeavesMaterialThatAStereoSinkFoldedAsItIs) {
    EXPECT_THAT(feeds({"FL", "FR", "FC", "LFE", "RL", "RR"}, {"FL", "FR"}),
                ElementsAre(std::pair("FL", left), std::pair("FR", right)));
}

TEST(Downmix, TakesTheFirstTwoOfNumberedChannelsThatHoldPlacedMaterial) {
    EXPECT_THAT(feeds({"FL", "FR"}, {"AUX0", "AUX1", "AUX2", "AUX3"}),
                ElementsAre(std::pair("AUX0", left), std::pair("AUX1", right)));
}

TEST(Downmix, TakesAllOfNumberedChannelsThatPlayNowhere) {
    EXPECT_THAT(feeds({"AUX0", "AUX1", "AUX2", "AUX3"}, {"AUX0", "AUX1", "AUX2", "AUX3"}),
                ElementsAre(std::pair("AUX0", left),
                            std::pair("AUX1", right),
                            std::pair("AUX2", left),
                            std::pair("AUX3", right)));
}

TEST(Downmix, TakesTheFrontPairWhenTheMaterialIsUnknown) {
    EXPECT_THAT(feeds({}, {"FL", "FR", "FC"}),
                ElementsAre(std::pair("FL", left), std::pair("FR", right)));
}

TEST(Downmix, FindsNothingInAStreamWithoutPorts) {
    EXPECT_THAT(feeds({"FL", "FR"}, {}), IsEmpty());
}

/// A JACK program with four outputs, and an interface with four inputs beside stereo speakers.
class UnplacedDownmix : public ::testing::Test {
protected:
    UnplacedDownmix() {
        builder.addPorts(synth, "out", {"one", "two", "three", "four"});
        for (const char* const position : {"FL", "FR"}) {
            builder.addPort(mic, "in", 0, position);
        }
    }

    const Port& port(Serial node, std::size_t at) { return builder.graph.node(node)->ports.at(at); }
    void play(std::size_t output, Serial device, std::size_t input) {
        builder.addPortLink(synth, port(synth, output), device, port(device, input));
    }
    Feeds feeds() {
        Feeds found;
        for (const TapFeed& feed : stereoMixdown(builder.graph, *builder.graph.node(synth))) {
            for (const Port& one : builder.graph.node(synth)->ports) {
                if (one.serial == feed.port) {
                    found.emplace_back(one.name, feed.input);
                }
            }
        }
        return found;
    }

    GraphBuilder builder;
    Serial speakers = builder.addSink("speakers", {"FL", "FR"});
    Serial interface = builder.addSink("interface", {"AUX0", "AUX1", "AUX2", "AUX3"});
    Serial mic = builder.addNode("mic", "Audio/Source/Virtual");
    Serial synth = builder.addNode("synth", "", {{"client.api", "jack"}});
};

TEST_F(UnplacedDownmix, TakesThePortsThatPlayToAnOutputOnTheirSides) {
    play(2, speakers, 0);
    play(3, speakers, 1);
    play(0, mic, 0); // no output

    EXPECT_THAT(feeds(), ElementsAre(std::pair("three", left), std::pair("four", right)));
}

TEST_F(UnplacedDownmix, TakesAPortThatPlaysOnBothSidesOnBoth) {
    play(0, speakers, 0);
    play(0, speakers, 1);

    EXPECT_THAT(feeds(), ElementsAre(std::pair("one", left), std::pair("one", right)));
}

TEST_F(UnplacedDownmix, TakesNumberedChannelsOfAnInterfaceInTurn) {
    play(0, interface, 2);
    play(1, interface, 3);
    play(2, interface, 1);

    EXPECT_THAT(
        feeds(),
        ElementsAre(std::pair("one", left), std::pair("two", right), std::pair("three", right)));
}

TEST_F(UnplacedDownmix, TakesAllPortsWhenNoneIsPlayed) {
    play(0, mic, 0);

    EXPECT_THAT(feeds(),
                ElementsAre(std::pair("one", left),
                            std::pair("two", right),
                            std::pair("three", left),
                            std::pair("four", right)));
}

} // namespace
} // namespace velmora::pipewire
