#include "platform/pipewire/keep/RouteMemory.h"

#include "platform/pipewire/view/GraphBuilder.h"
#include "platform/pipewire/view/StreamTarget.h"
#include "support/TemporaryFolder.h"

#include <fstream>
#include <gtest/gtest.h>

namespace velmora::pipewire {
namespace {

using namespace std::chrono_literals;

class RouteMemoryTest : public ::testing::Test {
protected:
    RouteMemoryTest() {
        builder.setDefaultSink("speakers");
        memory.follow(now);
    }

    void write(const std::string& name, const std::string& device) {
        std::ofstream(folder.path() / name)
            << "[" << name << "]\nOutput/Audio:media.role:Music:target=" << device << "\n";
    }
    void give(Serial one, const std::string& key, Serial value) {
        builder.graph.setMetadata("default",
                                  GraphBuilder::id(one),
                                  key,
                                  MetadataValue{.type = "Spa:Id", .value = std::to_string(value)});
    }
    void send(Serial one, const std::string& key, Serial value) {
        give(one, key, value);
        memory.follow(now);
    }
    [[nodiscard]] std::string device() const {
        return memory.device(*builder.graph.node(stream), now);
    }

    support::TemporaryFolder folder{"velmora-memory"};
    GraphBuilder builder;
    RouteMemory::Clock::time_point now{1h};
    RouteMemory memory{builder.graph, folder.path()};
    Serial headset = builder.addSink("headset", {"FL", "FR"});
    Serial speakers = builder.addSink("speakers", {"FL", "FR"});
    Serial silent = builder.addNode("velmora.mute.1", "Audio/Sink/Internal");
    const Properties music{{"media.role", "Music"}, {"node.autoconnect", "true"}};
    Serial stream = builder.addNode("one", "Stream/Output/Audio", music);
    Serial other = builder.addNode("two", "Stream/Output/Audio", music);
};

TEST_F(RouteMemoryTest, IsWhatTheFileSays) {
    write("restore-stream", "television");

    EXPECT_EQ(device(), "television");
}

TEST_F(RouteMemoryTest, IsWhatWasChosenSinceTheFileWasWritten) {
    write("restore-stream", "television");

    send(other, "target.object", headset);
    EXPECT_EQ(device(), "headset") << "of the same kind";

    send(stream, "target.node", speakers);
    EXPECT_EQ(device(), "speakers");
}

TEST_F(RouteMemoryTest, WhatIsWrittenIsWhatTheFileSaysWhateverWasChosenSince) {
    const RouteKey role{.property = "media.role", .value = "Music"};
    EXPECT_EQ(memory.written(role), std::nullopt) << "no file";

    write("restore-stream", "television");
    send(stream, "target.object", headset);

    EXPECT_EQ(memory.written(role), "television");
    EXPECT_EQ(memory.written({.property = "media.role", .value = "Game"}), "");
}

TEST_F(RouteMemoryTest, IsWhatWasChosenEvenIfItWasReplacedBeforeWeLooked) {
    write("restore-stream", "television");

    give(stream, "target.object", headset);
    memory.hear(*builder.graph.node(stream), targetObjectKey, now);
    send(stream, "target.object", silent);

    EXPECT_EQ(device(), "headset");
}

TEST_F(RouteMemoryTest, IsNotWhatAStreamWasGivenBack) {
    send(stream, "target.object", headset);
    send(other, "target.object", speakers);
    send(stream, "target.object", silent);

    memory.expect(stream, targetObjectKey, std::to_string(headset), now);
    send(stream, "target.object", headset);
    EXPECT_EQ(device(), "speakers");

    now += 2s;
    send(stream, "target.object", silent);
    send(stream, "target.object", headset);
    EXPECT_EQ(device(), "headset") << "chosen by somebody, later";
}

TEST_F(RouteMemoryTest, IsNotWhereAStandInWasSent) {
    send(stream, "target.object", speakers);
    const Serial standIn =
        builder.addNode("velmora.route.1", "Stream/Output/Audio", {{"media.role", "Music"}});

    send(standIn, "target.node", headset);

    EXPECT_EQ(device(), "speakers");
}

TEST_F(RouteMemoryTest, IsTheFilesAgainOnceThatIsWritten) {
    send(stream, "target.object", headset);
    write("restore-stream", "television");
    now += 10s;

    EXPECT_EQ(device(), "television");
}

TEST_F(RouteMemoryTest, TellsTheManagerThatActsLaterByItsFile) {
    EXPECT_FALSE(memory.isManagerQueueing());
    write("restore-stream", "television");
    EXPECT_FALSE(memory.isManagerQueueing());

    write("stream-properties", "television");
    EXPECT_TRUE(memory.isManagerQueueing());
}

TEST_F(RouteMemoryTest, IsNeverASinkOfOurs) {
    write("restore-stream", "television");

    send(stream, "target.object", silent);

    EXPECT_EQ(device(), "television");
}

TEST_F(RouteMemoryTest, IsNotWhatWasChosenBeforeWeLooked) {
    write("restore-stream", "television");
    RouteMemory later(builder.graph, folder.path());
    send(stream, "target.object", headset);

    later.follow(now);

    EXPECT_EQ(later.device(*builder.graph.node(stream), now), "television");
}

TEST_F(RouteMemoryTest, IsTheStreamsOwnTargetWithoutAFile) {
    EXPECT_EQ(device(), "");

    send(stream, "target.object", headset);
    now += 10s;

    EXPECT_EQ(device(), "headset");
}

} // namespace
} // namespace velmora::pipewire
