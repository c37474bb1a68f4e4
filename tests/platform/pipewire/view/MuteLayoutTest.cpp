#include "platform/pipewire/view/MuteLayout.h"

#include "GraphBuilder.h"

#include <gtest/gtest.h>

namespace velmora::pipewire {
namespace {

TEST(MuteLayout, HasTheShapeOfTheSinkThatTheStreamPlaysTo) {
    GraphBuilder builder;
    builder.addSink("stereo", {"FL", "FR"});
    const Serial surround = builder.addSink("surround", {"FL", "FR", "FC", "LFE", "RL", "RR"});
    builder.setDefaultSink("stereo");
    const Serial stream = builder.addStream(0, {"FL", "FR", "FC", "LFE", "RL", "RR"});
    builder.addLink(stream, surround);

    EXPECT_EQ(targetLayout(builder.graph, {stream}), "[FL,FR,FC,LFE,RL,RR]");
}

TEST(MuteLayout, HasTheShapeOfTheDefaultSinkWhenNothingPlays) {
    GraphBuilder builder;
    builder.addSink("interface", {"AUX0", "AUX1", "AUX2", "AUX3"});
    builder.setDefaultSink("interface");

    EXPECT_EQ(targetLayout(builder.graph, {}), "[AUX0,AUX1,AUX2,AUX3]");
}

TEST(MuteLayout, IsStereoWhenNothingIsKnown) {
    const Graph graph;

    EXPECT_EQ(targetLayout(graph, {}), "[FL,FR]");
}

} // namespace
} // namespace velmora::pipewire
