// Other programs that choose a stream's device at the very moment when we give it back.

#include "platform/pipewire/ControlTest.h"
#include "platform/pipewire/keep/MuteSinks.h"
#include "platform/pipewire/view/StreamTarget.h"

#include <utility>
#include <vector>

namespace velmora::pipewire {
namespace {

using namespace support;

/// Mutes one application's streams; what comes from the session manager is read only while the test
/// does not hold the loop's lock.
class GivingBack : public SessionTest {
protected:
    GivingBack() {
        app.play("one", 440, 554, -20);
        EXPECT_TRUE(waitUntil([] { return plays(speakers.name); }));
        session().add(headset); // later: a test before may have chosen it for this kind of stream
        const Loop::Lock lock(loop);
        EXPECT_EQ(connection.open(), statusOk);
        EXPECT_TRUE(loop.start());
    }
    ~GivingBack() override {
        loop.stop();
        mutes.clear();
        connection.close();
        session().remove(headset.name);
    }

    static bool plays(const std::string& device) { return session().graph().linked("one", device); }

    /// With the lock.
    [[nodiscard]] std::vector<Serial> streams() const {
        const Node* const stream = graph.nodeNamed("one");
        return stream == nullptr ? std::vector<Serial>{} : std::vector{stream->serial};
    }
    void mute() {
        EXPECT_TRUE(waitUntil([this] {
            const Loop::Lock lock(loop);
            if (connection.isListed()) {
                mutes.follow(
                    {{1, 1}}, [this](AudioObjectID) { return streams(); }, MuteSinks::Clock::now());
            }
            return !told.empty() && told.back().first == targetNodeKey;
        }));
        EXPECT_TRUE(waitUntil([this] { return !plays(speakers.name); }));
    }

    const SessionDevice headset{
        .name = "test.headset", .description = "Headset", .mediaClass = "Audio/Sink"};
    PipeWireLibrary library;
    ToneApp app{session()};
    Loop loop{"test"};
    Graph graph;
    std::vector<std::pair<std::string, std::string>> told; // keys and values, with the lock
    Connection connection{loop.get(),
                          graph,
                          {.changed = [] {},
                           .clientCame = [] {},
                           .metadataTold =
                               [this](GlobalId subject, const std::string& key) {
                                   const auto value = graph.metadata(sessionMetadata, subject, key);
                                   told.emplace_back(key, value.value_or(MetadataValue{}).value);
                                   mutes.hear(subject, key, MuteSinks::Clock::now());
                               },
                           .managerLost = [] {},
                           .lost = [] {}}};
    MuteSinks mutes{connection, graph, [] { return "velmora.mute.test"; }};
};

TEST_F(GivingBack, LeavesTheStreamWhereSomebodySendsItMeanwhile) {
    mute();

    {
        const Loop::Lock lock(loop);
        runToEnd({"pw-metadata",
                  std::to_string(graph.nodeNamed("one")->id),
                  targetObjectKey,
                  std::to_string(graph.nodeNamed(headset.name)->serial),
                  "Spa:Id"},
                 session().environment());
        mutes.keepOnly({}, {}, MuteSinks::Clock::now()); // has not heard of that
    }

    EXPECT_TRUE(waitUntil([this] {
        const Loop::Lock lock(loop);
        return mutes.isSettled(MuteSinks::Clock::now());
    }));
    EXPECT_TRUE(waitUntil([this] { return plays(headset.name); }));
    EXPECT_FALSE(plays(speakers.name));
}

TEST_F(GivingBack, HearsEveryChangeWhileTheListIsReadAgain) {
    mute();

    {
        const Loop::Lock lock(loop);
        told.clear();
        for (const char* const value : {"first", "second"}) {
            connection.setSessionMetadata(0, "test.key", MetadataValue{"", value});
        }
        connection.readSessionMetadataAgain();
    }

    std::vector<std::string> heard;
    ASSERT_TRUE(waitUntil([&] {
        const Loop::Lock lock(loop);
        heard.clear();
        for (const auto& [key, value] : told) {
            if (key == "test.key") {
                heard.push_back(value);
            }
        }
        return !heard.empty() && heard.back() == "second";
    }));
    EXPECT_EQ(heard.front(), "first");
}

} // namespace
} // namespace velmora::pipewire
