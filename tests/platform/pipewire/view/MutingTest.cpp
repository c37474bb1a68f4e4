#include "platform/pipewire/view/Muting.h"

#include "GraphBuilder.h"
#include "platform/pipewire/view/StreamTarget.h"

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

TEST(DeviceNamed, IsNoStreamWhateverItIsCalled) {
    GraphBuilder builder;
    builder.addNode("headset", "Stream/Output/Audio");
    EXPECT_EQ(deviceNamed(builder.graph, "headset"), nullptr);

    const Serial headset = builder.addSink("headset", {"FL", "FR"});
    EXPECT_EQ(deviceNamed(builder.graph, "headset"), builder.graph.node(headset));
    EXPECT_EQ(deviceNamed(builder.graph, "speakers"), nullptr);
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

TEST_F(LeftLinks, AreNoneToAProgramThatRecordsTheStream) {
    const Serial recorder = builder.addNode("recorder", "Stream/Input/Audio");
    builder.addLink(stream, recorder, manager);
    const Serial left = builder.addLink(stream, speakers, manager);
    builder.addLink(stream, sink, manager);

    EXPECT_THAT(leftLinks(builder.graph, stream, sink), ElementsAre(left));
}

class Muting : public ::testing::Test {
protected:
    Serial stream(Properties properties) {
        return builder.addNode("stream", "Stream/Output/Audio", std::move(properties));
    }
    [[nodiscard]] bool canBe(Serial one) const { return canBeMuted(builder.graph, {one}); }

    GraphBuilder builder;
};

TEST_F(Muting, IsForStreamsThatTheSessionManagerMoves) {
    EXPECT_TRUE(canBe(stream({{"node.autoconnect", "true"}})));
    EXPECT_FALSE(canBe(stream({})));
    EXPECT_FALSE(canBe(stream({{"node.autoconnect", "true"}, {"node.dont-reconnect", "true"}})));
    EXPECT_FALSE(canBe(stream({{"node.autoconnect", "true"}, {"node.dont-move", "true"}})));
    EXPECT_FALSE(canBe(builder.addNode("synth", "", {{"client.api", "jack"}})));
}

TEST_F(Muting, IsNotDeniedBeforeAStreamIsKnown) {
    builder.graph.addNode(
        7, {{"object.serial", "7"}, {"media.class", "Stream/Output/Audio"}, {"node.name", "new"}});

    EXPECT_TRUE(canBe(7));
}

TEST_F(Muting, IsForAllOfAnApplicationsStreams) {
    const Serial movable = stream({{"node.autoconnect", "true"}});

    EXPECT_FALSE(canBeMuted(builder.graph, {movable, stream({})}));
}

TEST_F(Muting, IsHeardWhereItPlaysToAnOutput) {
    const Serial speakers = builder.addSink("speakers", {"FL", "FR"});
    const Serial silent = builder.addNode("velmora.mute.1", "Audio/Sink/Internal");
    const Serial recorder = builder.addNode("recorder", "Stream/Input/Audio");
    const Serial one = stream({});
    builder.addLink(one, silent);
    builder.addLink(one, recorder);
    EXPECT_FALSE(isHeard(builder.graph, one));

    builder.addLink(one, speakers);
    EXPECT_TRUE(isHeard(builder.graph, one));
}

} // namespace
} // namespace velmora::pipewire
