// What the mix does when somebody else takes its links and sinks away.

#include "MixerTest.h"

namespace velmora {
namespace {

using namespace support;

constexpr std::string_view muteSink = "velmora.mute.";

class Interference : public ListeningMixerTest {
protected:
    Interference() {
        engine.setMonitoringSelection(interface4.name + "#3");
        app.play("music", leftHz, rightHz, playedDb);
    }

    /// A mix of the application, which is heard.
    void mixTheApplication() {
        mix({playing(app.pid())});
        ASSERT_TRUE(mic.hears(0, leftHz, playedDb));
    }

    static void destroy(std::uint32_t id) {
        runToEnd({"pw-cli", "destroy", std::to_string(id)}, session().environment());
    }
    /// The links from `from` to nodes whose names begin so.
    static std::vector<GraphLink> links(std::string_view from, std::string_view to) {
        auto found = session().graph().links();
        std::erase_if(found, [&](const GraphLink& link) {
            return !link.from.starts_with(from) || !link.to.starts_with(to);
        });
        return found;
    }
    static std::vector<GraphLink> linksToMicrophone() { return links("velmora.mix.", microphone); }

    const ToneApp app{session()};
};

TEST_F(Interference, AMuteSinkThatSomebodyRemovesIsReplaced) {
    const AudioSource source = playing(app.pid());
    engine.setDirectMuted(true, source);
    mix({source});
    ASSERT_TRUE(atSpeakers.isSilentAt(0, leftHz));
    const AudioGraph before = session().graph();
    const auto toSink = links("music", muteSink);
    ASSERT_FALSE(toSink.empty());

    destroy(before.node(toSink.front().to)->id);

    EXPECT_TRUE(waitUntil([&] {
        const auto now = links("music", muteSink);
        return !now.empty() && now.front().to != toSink.front().to;
    }));
    EXPECT_TRUE(atSpeakers.isSilentAt(0, leftHz));
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    engine.setDirectMuted(false, source);
    EXPECT_TRUE(atSpeakers.hears(0, leftHz, playedDb));
}

TEST_F(Interference, AMixWhoseNodeSomebodyRemovesStartsAgain) {
    mixTheApplication();
    const auto toMic = linksToMicrophone();
    ASSERT_FALSE(toMic.empty());

    destroy(session().graph().node(toMic.front().from)->id);

    EXPECT_TRUE(waitUntil([&] {
        const auto now = linksToMicrophone();
        return now.size() == 2 && now.front().from != toMic.front().from;
    }));
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    EXPECT_TRUE(engine.isRunning());
}

TEST_F(Interference, ALinkThatSomebodyRemovesIsMadeAgain) {
    mixTheApplication();
    const auto toMic = linksToMicrophone();
    ASSERT_EQ(toMic.size(), 2U);

    for (const GraphLink& link : toMic) {
        destroy(link.id);
    }

    EXPECT_TRUE(mic.waitForFreshSound());
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    EXPECT_TRUE(mic.hears(1, rightHz, playedDb));
}

} // namespace
} // namespace velmora
