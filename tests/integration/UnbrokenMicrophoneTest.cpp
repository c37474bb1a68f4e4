// The virtual microphone as another program's input: always there, never a loop.

#include "MixerTest.h"

namespace velmora {
namespace {

using namespace support;
using namespace std::chrono_literals;

class UnbrokenMicrophone : public ListeningMixerTest {
protected:
    struct Identity {
        std::uint64_t node{};
        std::vector<std::uint32_t> links; // to the program that records

        bool operator==(const Identity&) const = default;
    };
    static Identity identity() {
        const AudioGraph graph = session().graph();
        const GraphNode* const node = graph.node(microphone);
        Identity found{.node = node == nullptr ? 0 : node->serial, .links = {}};
        for (const GraphLink& link : graph.links()) {
            if (link.from == microphone) {
                found.links.push_back(link.id);
            }
        }
        return found;
    }

    ToneApp app{session()};
};

TEST_F(UnbrokenMicrophone, IsOneNodeToItsClientThroughEveryChangeOfTheMix) {
    const SessionDevice headset{
        .name = "test.headset", .description = "Headset", .mediaClass = "Audio/Sink"};
    const ToneApp other(session());
    app.play("music", leftHz, rightHz, playedDb);
    other.play("call", otherLeftHz, otherRightHz, playedDb);
    const AudioSource first = playing(app.pid());
    const AudioSource second = playing(other.pid());
    ASSERT_TRUE(mic.waitForFreshSound());
    const Identity before = identity();
    ASSERT_EQ(before.links.size(), 2U);
    const auto isUnbroken = [&] { return mic.waitForFreshSound() && identity() == before; };

    mix({first});
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    EXPECT_TRUE(isUnbroken()) << "start";
    engine.setPrimary(second);
    EXPECT_TRUE(mic.hears(0, otherLeftHz, playedDb));
    EXPECT_TRUE(isUnbroken()) << "another source";
    engine.stop();
    EXPECT_TRUE(isUnbroken()) << "stop";
    mix({first, second});
    session().add(headset);
    session().setDefaultSink(headset.name);
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    EXPECT_TRUE(isUnbroken()) << "another output";
    session().remove(headset.name);
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    EXPECT_TRUE(isUnbroken()) << "the output went";
}

TEST_F(UnbrokenMicrophone, AnImpulseDiesOutWithItAsDefaultInputAndAnyDefaultOutput) {
    runToEnd({"pw-metadata",
              "0",
              "default.configured.audio.source",
              R"({"name":")" + microphone + R"("})",
              "Spa:String:JSON"},
             session().environment());
    // A call program that plays what it records would close a loop of its own; this one records.
    const PulseRecorder call(session(), microphone);
    app.play("music", leftHz, rightHz, playedDb);
    const AudioSource source = playing(app.pid());
    for (const std::string& output : {interface4.name, speakers.name}) {
        session().setDefaultSink(output);
        mix({source});
        app.play("music", leftHz, rightHz, playedDb);
        EXPECT_TRUE(mic.hears(0, leftHz, playedDb)) << output;

        app.stop("music");

        EXPECT_TRUE(mic.waitForMore(48000)) << output;
        float loudest = 0;
        for (const float sample : mic.latest(0.25).samples) {
            loudest = std::max(loudest, std::abs(sample));
        }
        EXPECT_LT(loudest, 1e-5F) << output;
        EXPECT_TRUE(atSpeakers.isSilentAt(0, leftHz)) << output;
        engine.stop();
    }
}

} // namespace
} // namespace velmora
