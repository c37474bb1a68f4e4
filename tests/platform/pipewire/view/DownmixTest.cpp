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
    for (const TapFeed& feed : stereoMixdown(node)) {
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

TEST(Downmix, TakesTheFirstTwoOfNumberedChannels) {
    EXPECT_THAT(feeds({"AUX0", "AUX1", "AUX2", "AUX3"}, {"AUX0", "AUX1", "AUX2", "AUX3"}),
                ElementsAre(std::pair("AUX0", left), std::pair("AUX1", right)));
}

TEST(Downmix, TakesTheFrontPairWhenTheMaterialIsUnknown) {
    EXPECT_THAT(feeds({}, {"FL", "FR", "FC"}),
                ElementsAre(std::pair("FL", left), std::pair("FR", right)));
}

TEST(Downmix, FindsNothingInAStreamWithoutPorts) {
    EXPECT_THAT(feeds({"FL", "FR"}, {}), IsEmpty());
}

} // namespace
} // namespace velmora::pipewire
