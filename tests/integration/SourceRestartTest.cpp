// Applications that stop and start their streams, connect anew, and move about.

#include "MixerTest.h"

#include "support/ProcessFigures.h"

#include <chrono>
#include <unistd.h>

namespace velmora {
namespace {

using namespace support;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// How long an application may be missing after it plays again.
constexpr auto heardAgain = 1s;
constexpr int restarts = 100;
/// How many moments of a muted one may be heard. Its new stream is sent away before the session
/// manager links it, unless a machine that gives its processors away holds us up for 10 ms just
/// then.
constexpr int momentsHeard = 2;

constexpr double momentSeconds = 0.05;

class SourceRestart : public ListeningMixerTest {
protected:
    SourceRestart() { engine.setMonitoringSelection(interface4.name + "#3"); }

    /// Level of the left tone over the last moment.
    double levelNow() const { return toneDb(mic.latest(momentSeconds).channel(0), leftHz); }

    struct Moments {
        int all = 0;
        int louder = 0;
    };
    /// The moments of the left channel so far, from a frame on, and those louder than this.
    static Moments moments(const Recorder& recorder, std::size_t from, double hz, double db) {
        const auto samples = recorder.all().channel(0, from);
        constexpr auto length = static_cast<std::size_t>(momentSeconds * 48000);
        Moments found;
        for (std::size_t at = 0; at + length <= samples.size(); at += length) {
            ++found.all;
            found.louder += toneDb(std::span(samples).subspan(at, length), hz) > db ? 1 : 0;
        }
        return found;
    }

    /// Objects of ours, and links to and from them.
    static std::size_t ownObjects() {
        const auto isOurs = [](std::string_view name) { return name.starts_with("velmora."); };
        const AudioGraph graph = session().graph();
        return static_cast<std::size_t>(
            std::ranges::count_if(graph.nodes(), isOurs, &GraphNode::name) +
            std::ranges::count_if(graph.links(), [&](const GraphLink& link) {
                return isOurs(link.from) || isOurs(link.to);
            }));
    }

    ToneApp app{session()};
};

TEST_F(SourceRestart, AHundredRestartsAreAHundredRecoveriesWithTheSameSettings) {
    app.play("music", leftHz, rightHz, playedDb);
    const AudioSource source = playing(app.pid());
    setGainDb(-6, source);
    engine.setFX({.lowcut = 2, .autoGain = false}, source);
    engine.setDirectMuted(true, source);
    mix({source});
    ASSERT_TRUE(atSpeakers.isSilentAt(0, leftHz));
    ASSERT_TRUE(waitUntil([&] { return std::abs(levelNow() - (playedDb - 6)) < 1; }));
    const double level = levelNow();
    const std::size_t mutedFrom = atSpeakers.frames();
    std::int64_t resident = 0;
    const std::int64_t descriptors = openDescriptors(getpid());
    const std::size_t objects = ownObjects();

    std::vector<Clock::duration> recoveries;
    for (int restart = 1; restart <= restarts; ++restart) {
        app.stop("music");
        ASSERT_TRUE(waitUntil([&] { return levelNow() < -60; })) << restart;
        const auto begin = Clock::now();
        app.play("music", leftHz, rightHz, playedDb);
        ASSERT_TRUE(waitUntil([&] { return std::abs(levelNow() - level) < 0.5; })) << restart;
        recoveries.push_back(Clock::now() - begin);
        if (restart == restarts / 10) { // from here on nothing is made for the first time
            returnFreedMemory();
            resident = residentBytes(getpid());
        }
    }

    std::ranges::sort(recoveries);
    RecordProperty("medianMilliseconds", milliseconds(recoveries[restarts / 2]));
    RecordProperty("slowestMilliseconds", milliseconds(recoveries.back()));
    EXPECT_LE(milliseconds(recoveries.back()), milliseconds(heardAgain));
    EXPECT_LE(moments(atSpeakers, mutedFrom, leftHz, -40).louder, momentsHeard)
        << "muted all along";
    EXPECT_TRUE(waitUntil([&] { return ownObjects() == objects; }));
    EXPECT_EQ(openDescriptors(getpid()), descriptors);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // their own would be counted
    returnFreedMemory();
    EXPECT_LT(residentBytes(getpid()) - resident, 1 << 20);
#endif
}

TEST_F(SourceRestart, AnApplicationThatConnectsAnewIsHeardAgain) {
    app.play("music", leftHz, rightHz, playedDb);
    const AudioSource source = playing(app.pid());
    engine.setDirectMuted(true, source);
    mix({source});
    ASSERT_TRUE(mic.hears(0, leftHz, playedDb));

    app.reconnect();
    EXPECT_TRUE(mic.isSilentAt(0, leftHz));
    app.play("music", leftHz, rightHz, playedDb);

    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    EXPECT_TRUE(mic.hears(1, rightHz, playedDb));
    EXPECT_TRUE(atSpeakers.isSilentAt(0, leftHz));
}

TEST_F(SourceRestart, AnApplicationIsHeardWithoutAGapWhileItMovesAndWhileItsSinkGoes) {
    const SessionDevice headset{
        .name = "test.headset", .description = "Headset", .mediaClass = "Audio/Sink"};
    session().add(headset);
    app.play("music", leftHz, rightHz, playedDb);
    mix({playing(app.pid())});
    ASSERT_TRUE(mic.hears(0, leftHz, playedDb));
    const Recorder atHeadset(session(), headset.name, {1, 2});
    const std::size_t from = mic.frames();
    const AudioGraph graph = session().graph();

    runToEnd({"pw-metadata",
              std::to_string(graph.node("music")->id),
              "target.object",
              std::to_string(graph.node(headset.name)->serial),
              "Spa:Id"},
             session().environment());
    EXPECT_TRUE(atHeadset.hears(0, leftHz, playedDb));
    session().remove(headset.name);
    EXPECT_TRUE(atSpeakers.hears(0, leftHz, playedDb));
    EXPECT_TRUE(mic.waitForFreshSound());

    const Moments heard = moments(mic, from, leftHz, playedDb - 6);
    EXPECT_GT(heard.all, 0);
    EXPECT_EQ(heard.louder, heard.all);
}

} // namespace
} // namespace velmora
