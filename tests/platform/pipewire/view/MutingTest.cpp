#include "platform/pipewire/view/Muting.h"

#include "GraphBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora::pipewire {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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

/// A stream that a session manager has sent from the speakers to another sink.
class LeftLinks : public ::testing::Test {
protected:
    GraphBuilder builder;
    Serial manager = builder.addClient({});
    Serial user = builder.addClient({});
    Serial speakers = builder.addSink("speakers", {"FL", "FR"});
    Serial sink = builder.addSink("sink", {"FL", "FR"});
    Serial stream = builder.addStream(0, {"FL", "FR"});
    Serial other = builder.addStream(0, {"FL", "FR"});
};

TEST_F(LeftLinks, AreThoseThatTheManagerMadeBefore) {
    const Serial left = builder.addLink(stream, speakers, manager);
    const Serial right = builder.addLink(stream, speakers, manager);
    builder.addLink(other, speakers, manager);
    builder.addLink(stream, sink, manager);

    EXPECT_THAT(leftLinks(builder.graph, stream, sink), ElementsAre(left, right));
}

TEST_F(LeftLinks, AreNoneBeforeTheStreamHasArrived) {
    builder.addLink(stream, speakers, manager);
    builder.addLink(other, sink, manager);

    EXPECT_THAT(leftLinks(builder.graph, stream, sink), IsEmpty());
}

TEST_F(LeftLinks, AreNoneOfTheUsersOwn) {
    builder.addLink(stream, speakers, user);
    builder.addLink(stream, sink, manager);
    builder.addLink(stream, speakers, user);

    EXPECT_THAT(leftLinks(builder.graph, stream, sink), IsEmpty());
}

TEST_F(LeftLinks, AreNoneThatTheManagerMakesAfterwards) {
    builder.addLink(stream, sink, manager);
    builder.addLink(stream, speakers, manager);

    EXPECT_THAT(leftLinks(builder.graph, stream, sink), IsEmpty());
}

TEST(Muting, IsNothingForProgramsThatTheSessionManagerDoesNotMove) {
    GraphBuilder builder;
    const Serial stream = builder.addStream(0, {"FL", "FR"});
    const Serial jack = builder.addNode("synth", "", {{"client.api", "jack"}});

    EXPECT_TRUE(canBeMuted(builder.graph, {stream}));
    EXPECT_FALSE(canBeMuted(builder.graph, {stream, jack}));
}

} // namespace
} // namespace velmora::pipewire
