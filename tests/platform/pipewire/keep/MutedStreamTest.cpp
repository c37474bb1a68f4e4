#include "platform/pipewire/keep/MutedStream.h"

#include "platform/pipewire/view/GraphBuilder.h"
#include "platform/pipewire/view/StreamTarget.h"

#include <gtest/gtest.h>

namespace velmora::pipewire {
namespace {

/// A stream that was sent to the sink `silent`.
class MutedStreamTest : public ::testing::Test {
protected:
    MutedStreamTest() { builder.setDefaultSink("speakers"); }

    void give(const char* key, const std::string& value, const std::string& type = "Spa:Id") {
        builder.graph.setMetadata(
            "default", GraphBuilder::id(stream), key, MetadataValue{.type = type, .value = value});
    }
    std::optional<std::string> chosen(const char* key = targetObjectKey) {
        return takeOverChoice(builder.graph, muted, key);
    }

    GraphBuilder builder;
    Serial headset = builder.addSink("headset", {"FL", "FR"});
    Serial silent = builder.addNode("velmora.mute.1", "Audio/Sink/Internal");
    Serial stream = builder.addNode("one", "Stream/Output/Audio", {{"media.role", "Music"}});
    MutedStream muted = muteOf(builder.graph, *builder.graph.node(stream), silent);
};

TEST_F(MutedStreamTest, TakesOverADeviceThatWasChosen) {
    give(targetObjectKey, std::to_string(headset));

    EXPECT_EQ(chosen(), "headset");
    EXPECT_EQ(muted.targetObject.value_or(MetadataValue{}).value, std::to_string(headset));
    EXPECT_EQ(chosen(), std::nullopt) << "it is no news any more";
}

TEST_F(MutedStreamTest, TakesOverADeviceThatWasChosenByItsId) {
    give(targetNodeKey, std::to_string(GraphBuilder::id(headset)));

    EXPECT_EQ(chosen(targetNodeKey), "headset");
    EXPECT_TRUE(muted.targetNode.has_value());
}

TEST_F(MutedStreamTest, TakesOverThatNoDeviceWasChosen) {
    muted.targetObject = MetadataValue{.type = "Spa:Id", .value = std::to_string(headset)};

    EXPECT_EQ(chosen(), "");
    EXPECT_FALSE(muted.targetObject.has_value());
    give(targetObjectKey, "-1");
    EXPECT_EQ(chosen(), "");
}

TEST_F(MutedStreamTest, TakesOverNothingOfOurOwn) {
    give(targetObjectKey, std::to_string(silent));
    EXPECT_EQ(chosen(), std::nullopt);

    give(targetObjectKey, "12345");
    EXPECT_EQ(chosen(), std::nullopt) << "a sink of ours that has gone";

    give(targetNodeKey, std::to_string(GraphBuilder::id(headset)), "Spa:Int");
    EXPECT_EQ(chosen(targetNodeKey), std::nullopt) << "what was to be remembered";
    EXPECT_FALSE(muted.targetObject.has_value());
    EXPECT_FALSE(muted.targetNode.has_value());
}

} // namespace
} // namespace velmora::pipewire
