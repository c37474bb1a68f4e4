// How a mix is kept whole on a real graph: built once, monitored where the user said, and at the
// rate that the graph runs at.

#include "MixerTest.h"
#include "capture/DeviceQueries.h"
#include "support/ProcessFigures.h"

#include <unistd.h>

namespace velmora {
namespace {

using namespace support;
using namespace std::chrono_literals;

const SessionDevice headset{
    .name = "test.headset", .description = "Headset", .mediaClass = "Audio/Sink", .priority = 500};

class WholeMix : public ListeningMixerTest {
protected:
    AudioSource source() { return input(interface4.description, 1, 2); }
    /// Something that is waited for: an input that the interface does not have.
    AudioSource awaited() {
        return DeviceChannelsSource{
            .id = deviceId(interface4.description), .first = 9, .count = 2, .name = "Awaited"};
    }

    /// The name of the node that feeds the microphone; every build of a mix gets another one.
    static std::string node() {
        const AudioGraph graph = session().graph();
        std::string name;
        for (const GraphLink& link : graph.links()) {
            if (link.from.starts_with("velmora.mix.") && link.to == microphone) {
                name = link.from;
            }
        }
        return name;
    }
    /// Lets the program run on for so long.
    static void pass(std::chrono::milliseconds time) {
        EXPECT_FALSE(waitUntil([] { return false; }, time));
    }

    Feeder feeder{
        session(), interface4.name, {1, 2}, {.hz = {inputLeftHz, inputRightHz}, .db = playedDb}};
};

TEST_F(WholeMix, IsBuiltOnceForEachStartAndEachEdit) {
    mix({source()});
    std::string before;
    ASSERT_TRUE(waitUntil([&] { return !(before = node()).empty(); }));

    for (int round = 0; round < 6; ++round) {
        if (round % 2 == 0) {
            engine.start();
        } else {
            engine.setPrimary(input(interface4.description, round / 2 + 2, 1));
        }
        std::string built;
        ASSERT_TRUE(waitUntil([&] { return !(built = node()).empty() && built != before; }));
        pass(800ms); // a restart that nobody asked for would come half a second later
        EXPECT_EQ(node(), built) << "round " << round;
        before = built;
    }
}

TEST_F(WholeMix, IsMonitoredOnTheChosenHeadsetOrNowhereWithAndWithoutAnAwaitedSource) {
    for (const bool isOneAwaited : {false, true}) {
        session().add(headset);
        session().setDefaultSink(headset.name);
        engine.setMonitoringSelection(headset.name);
        auto sources = std::vector{source()};
        if (isOneAwaited) {
            sources.push_back(awaited());
        }
        ASSERT_TRUE(
            waitUntil([&] { return findDevice(platform.devices, headset.name).has_value(); }));
        engine.replaceSources(sources);
        engine.start();
        {
            const Recorder atHeadset(session(), headset.name, {1, 2});
            ASSERT_TRUE(atHeadset.hears(0, inputLeftHz, playedDb));
        }

        session().remove(headset.name); // the default output goes to the speakers
        pass(1500ms);
        EXPECT_TRUE(mic.hears(0, inputLeftHz, playedDb));
        EXPECT_TRUE(atSpeakers.isSilentAt(0, inputLeftHz)) << isOneAwaited;
        EXPECT_TRUE(engine.isRunning());

        session().add(headset);
        {
            const Recorder atHeadset(session(), headset.name, {1, 2});
            EXPECT_TRUE(atHeadset.hears(0, inputLeftHz, playedDb)) << isOneAwaited;
        }
        EXPECT_TRUE(atSpeakers.isSilentAt(0, inputLeftHz));
        engine.stop();
        session().remove(headset.name);
        ASSERT_TRUE(
            waitUntil([&] { return !findDevice(platform.devices, headset.name).has_value(); }));
    }
}

TEST_F(WholeMix, LeavesNoPortAndNoDescriptorBehindAfterManyToggles) {
    const ToneApp app(session());
    app.play("music", leftHz, rightHz, playedDb);
    const AudioSource music = playing(app.pid());
    mix({music});
    ASSERT_TRUE(mic.hears(0, leftHz, playedDb));
    const auto toggle = [&](int rounds) {
        for (int round = 0; round < rounds; ++round) {
            engine.setDirectMuted(round % 2 == 0, music);
            engine.setMonitoringSelection(round % 2 == 0 ? interface4.name + "#3" : speakers.name);
            pass(10ms);
        }
    };
    toggle(20); // the ports made at first serve the next ones
    ASSERT_TRUE(mic.hears(0, leftHz, playedDb));
    pass(500ms);
    const std::int64_t descriptors = openDescriptors(getpid());
    const std::string mixNode = node();
    const auto ports = [&] {
        const AudioGraph graph = session().graph();
        const GraphNode* const mixer = graph.node(mixNode);
        return mixer == nullptr ? 0 : mixer->inputPorts + mixer->outputPorts;
    };

    toggle(490); // two each: a thousand with those above

    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    EXPECT_EQ(node(), mixNode);
    EXPECT_LE(ports(), 60) << "a few sets, not a thousand";
    EXPECT_TRUE(waitUntil([&] { return openDescriptors(getpid()) <= descriptors + 60; }))
        << openDescriptors(getpid()) << " instead of " << descriptors;
}

class WholeMixAtAnyRate : public WholeMix {
protected:
    static void set(const std::string& key, const std::string& value) {
        runToEnd({"pw-metadata", "-n", "settings", "0", key, value}, session().environment());
    }
    WholeMixAtAnyRate() { set("clock.allowed-rates", "[ 44100 48000 96000 ]"); }
    ~WholeMixAtAnyRate() override { set("clock.force-rate", "0"); }
};

TEST_F(WholeMixAtAnyRate, FollowsTheGraphToAnotherRateAtOnceAndOnce) {
    mix({source()});
    ASSERT_TRUE(mic.hears(0, inputLeftHz, playedDb));
    const std::string before = node();

    set("clock.force-rate", "96000");

    std::string built;
    EXPECT_TRUE(waitUntil([&] { return !(built = node()).empty() && built != before; }));
    EXPECT_EQ(platform.taps.tapRate(), 96000.0);
    pass(800ms);
    EXPECT_EQ(node(), built);
    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(engine.lastError(), std::nullopt);
}

} // namespace
} // namespace velmora
