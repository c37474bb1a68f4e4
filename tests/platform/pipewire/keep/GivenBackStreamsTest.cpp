#include "platform/pipewire/keep/GivenBackStreams.h"

#include "platform/pipewire/view/GraphBuilder.h"
#include "platform/pipewire/view/StreamTarget.h"

#include <gtest/gtest.h>

namespace velmora::pipewire {
namespace {

using namespace std::chrono_literals;

/// A stream that played to the headset, was silenced, and is told to go back there.
class GivenBackStreamsTest : public ::testing::Test {
protected:
    GivenBackStreamsTest() {
        builder.setDefaultSink("speakers");
        streams.add(stream, {node(), object(headset)}, now);
    }

    static MetadataValue value(Serial device) {
        return {.type = "Spa:Id", .value = std::to_string(device)};
    }
    static TargetOrder object(Serial device) {
        return {.key = targetObjectKey, .value = value(device)};
    }
    static TargetOrder node() { return {.key = targetNodeKey, .value = std::nullopt}; }

    /// What the session manager tells of the stream.
    std::optional<TargetOrder> hear(const TargetOrder& told) {
        builder.graph.setMetadata("default", GraphBuilder::id(stream), told.key, told.value);
        return streams.hear(GraphBuilder::id(stream), told.key, now);
    }

    GraphBuilder builder;
    GivenBackStreams streams{builder.graph};
    GivenBackStreams::Clock::time_point now{1h};
    Serial headset = builder.addSink("headset", {"FL", "FR"});
    Serial television = builder.addSink("television", {"FL", "FR"});
    Serial silent = builder.addNode("velmora.mute.1", "Audio/Sink/Internal");
    Serial stream = builder.addNode("one", "Stream/Output/Audio", {{"media.role", "Music"}});
};

TEST_F(GivenBackStreamsTest, AreSettledOnceTheirOrdersHaveArrived) {
    EXPECT_FALSE(streams.isSettled(now));

    EXPECT_EQ(hear(object(silent)), std::nullopt) << "of the mute";
    EXPECT_EQ(hear(node()), std::nullopt);
    EXPECT_FALSE(streams.isSettled(now));
    EXPECT_EQ(hear(object(headset)), std::nullopt);

    EXPECT_TRUE(streams.isSettled(now));
}

TEST_F(GivenBackStreamsTest, AreToldAgainWhatWasChosenAMomentBefore) {
    EXPECT_EQ(hear(object(television)), std::nullopt) << "ours comes yet";

    EXPECT_EQ(hear(object(headset)), object(television));
    EXPECT_FALSE(streams.isSettled(now));
    EXPECT_EQ(hear(object(television)), std::nullopt);
    EXPECT_TRUE(streams.isSettled(now));
}

TEST_F(GivenBackStreamsTest, AreToldAgainThatNoDeviceWasChosen) {
    const TargetOrder none{.key = targetObjectKey, .value = std::nullopt};
    EXPECT_EQ(hear(none), std::nullopt);

    EXPECT_EQ(hear(object(headset)), none);
}

TEST_F(GivenBackStreamsTest, AreToldTheLastOfSeveralChoices) {
    hear(object(television));
    ASSERT_EQ(hear(object(headset)), object(television));

    EXPECT_EQ(hear(object(headset)), std::nullopt) << "chosen meanwhile";
    EXPECT_EQ(hear(object(television)), object(headset));
}

TEST_F(GivenBackStreamsTest, AreLeftToWhatIsChosenAfterwards) {
    hear(object(headset));

    EXPECT_EQ(hear(object(television)), std::nullopt);
    EXPECT_EQ(hear(object(headset)), std::nullopt);
}

TEST_F(GivenBackStreamsTest, AreForgottenWhenAnOrderDoesNotArrive) {
    now += 2s;

    EXPECT_TRUE(streams.isSettled(now));
    hear(object(television));
    EXPECT_EQ(hear(object(headset)), std::nullopt);
}

TEST_F(GivenBackStreamsTest, AreSettledWhenTheyEnd) {
    builder.graph.remove(GraphBuilder::id(stream));

    EXPECT_TRUE(streams.isSettled(now));
}

TEST_F(GivenBackStreamsTest, AreNotToldAgainWhenTheyAreMutedAnew) {
    hear(object(television));

    streams.remove(stream);

    EXPECT_EQ(hear(object(headset)), std::nullopt);
    EXPECT_TRUE(streams.isSettled(now));
}

} // namespace
} // namespace velmora::pipewire
