// Silenced applications among other programs: who records them, who moves them, and those that
// cannot be moved.

#include "MixerTest.h"
#include "SessionMemory.h"

#include <chrono>

namespace velmora {
namespace {

using namespace support;
using namespace std::chrono_literals;

/// The second copy of the mix goes to the interface, so that the speakers hold direct sound only.
class MutedByOthers : public ListeningMixerTest {
protected:
    MutedByOthers() { engine.setMonitoringSelection(interface4.name + "#3"); }
    ~MutedByOthers() override { engine.stop(); }

    AudioSource muted(pid_t pid) {
        AudioSource source = playing(pid);
        engine.setDirectMuted(true, source);
        return source;
    }

    [[nodiscard]] std::optional<ApplicationSound> soundOf(pid_t pid) const {
        return platform.taps.sound(platform.taps.processForPid(pid).value_or(0));
    }
    [[nodiscard]] bool isStillHeard(pid_t pid) const {
        return soundOf(pid).value_or(ApplicationSound{}).isStillHeard;
    }

    /// `paplay` with a tone, and what its streams ask for.
    ChildProcess play(const std::vector<std::string>& properties) {
        const auto file = session().folder() / "tone.wav";
        writeWav(file, makeTone({.hz = {leftHz, rightHz}, .db = playedDb}, 60));
        std::vector<std::string> arguments{"paplay"};
        for (const std::string& property : properties) {
            arguments.push_back("--property=" + property);
        }
        arguments.push_back(file);
        return session().start(std::move(arguments), "paplay");
    }

    /// As the user does it in a patch bay.
    static void link(const std::string& output, const std::string& input) {
        runToEnd({"pw-link", output, input}, session().environment());
    }

    const SessionDevice headset{
        .name = "test.headset", .description = "Headset", .mediaClass = "Audio/Sink"};
};

TEST_F(MutedByOthers, ItsRecorderKeepsItsLink) {
    const ToneApp app(session());
    app.play("music", leftHz, rightHz, playedDb);
    ASSERT_TRUE(atSpeakers.hears(0, leftHz, playedDb));
    const ChildProcess recorder = session().start(
        {"pw-record", "--target", "music", session().folder() / "recorded.wav"}, "pw-record");
    const auto isRecorded = [] { return session().graph().linked("music", "pw-record"); };
    ASSERT_TRUE(waitUntil(isRecorded));

    for (int times = 0; times < 3; ++times) {
        mix({muted(app.pid())});
        EXPECT_TRUE(atSpeakers.isSilentAt(0, leftHz));
        EXPECT_TRUE(isRecorded());
        engine.stop();
        EXPECT_TRUE(atSpeakers.hears(0, leftHz, playedDb));
        EXPECT_TRUE(isRecorded());
    }
}

TEST_F(MutedByOthers, IsSilentAgainWhereSomebodySendsItAndPlaysThereAfterwards) {
    session().add(headset);
    const Recorder atHeadset(session(), headset.name, {1});
    const ToneApp app(session());
    app.play("music", leftHz, rightHz, playedDb);
    mix({muted(app.pid())});
    ASSERT_TRUE(atSpeakers.isSilentAt(0, leftHz));

    sendTo(session(), "music", headset.name);

    static_cast<void>(waitUntil([] { return false; }, 1s));
    EXPECT_FALSE(session().graph().linked("music", headset.name));
    EXPECT_TRUE(atHeadset.isSilentAt(0, leftHz));
    EXPECT_TRUE(atSpeakers.isSilentAt(0, leftHz));
    EXPECT_FALSE(isStillHeard(app.pid()));

    engine.stop();
    EXPECT_TRUE(atHeadset.hears(0, leftHz, playedDb));
    EXPECT_TRUE(atSpeakers.isSilentAt(0, leftHz));
    session().remove(headset.name);
}

TEST_F(MutedByOthers, IsLeftToWhoeverKeepsSendingItElsewhere) {
    session().add(headset);
    const Recorder atHeadset(session(), headset.name, {1});
    const ToneApp app(session());
    app.play("music", leftHz, rightHz, playedDb);
    mix({muted(app.pid())});
    ASSERT_TRUE(atSpeakers.isSilentAt(0, leftHz));

    for (int times = 0; times < 3; ++times) {
        sendTo(session(), "music", headset.name);
        EXPECT_TRUE(waitUntil([] { return !session().graph().linked("music", "test.headset"); }));
        EXPECT_FALSE(isStillHeard(app.pid()));
    }
    sendTo(session(), "music", headset.name);

    EXPECT_TRUE(atHeadset.hears(0, leftHz, playedDb));
    EXPECT_TRUE(isStillHeard(app.pid()));
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    engine.stop();
    EXPECT_TRUE(atHeadset.hears(0, leftHz, playedDb));
    EXPECT_FALSE(isStillHeard(app.pid())) << "nobody wants it silent";
    session().remove(headset.name);
}

TEST_F(MutedByOthers, IsGivenBackWhenItIsInTheListTwice) {
    const ToneApp app(session());
    app.play("music", leftHz, rightHz, playedDb);
    ASSERT_TRUE(atSpeakers.hears(0, leftHz, playedDb));
    const SessionMemory before = memoryOf(session());
    const AudioSource source = muted(app.pid());
    mix({source, source});
    ASSERT_TRUE(atSpeakers.isSilentAt(0, leftHz));

    engine.setDirectMuted(false, source);

    EXPECT_TRUE(atSpeakers.hears(0, leftHz, playedDb));
    const SessionMemory after = memoryOf(session(), before);
    EXPECT_EQ(after.files, before.files);
    EXPECT_EQ(after.metadata, before.metadata);
}

TEST_F(MutedByOthers, IsSaidToBeHeardWhenItMayNotBeMoved) {
    const ChildProcess player = play({"node.dont-reconnect=true"});
    ASSERT_TRUE(atSpeakers.hears(0, leftHz, playedDb));

    mix({muted(player.pid())});

    EXPECT_TRUE(waitUntil([&] { return isStillHeard(player.pid()); }));
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    EXPECT_TRUE(atSpeakers.hears(0, leftHz, playedDb));
    engine.stop();
    EXPECT_TRUE(atSpeakers.hears(0, leftHz, playedDb));
}

TEST_F(MutedByOthers, AStreamThatMayNotBeMovedOutlivesTheMuteThatItWasBornUnder) {
    const ToneApp app(session());
    app.play("music", leftHz, rightHz, playedDb);
    mix({muted(app.pid())});
    ASSERT_TRUE(atSpeakers.isSilentAt(0, leftHz));
    EXPECT_FALSE(isStillHeard(app.pid()));

    app.pin("voice", otherLeftHz, otherRightHz, playedDb);

    EXPECT_TRUE(mic.hears(0, otherLeftHz, playedDb));
    EXPECT_TRUE(isStillHeard(app.pid()));
    EXPECT_TRUE(atSpeakers.isSilentAt(0, leftHz)) << "what can be silenced is";
    engine.stop();
    EXPECT_TRUE(atSpeakers.hears(0, otherLeftHz, playedDb));
    EXPECT_TRUE(atSpeakers.hears(0, leftHz, playedDb));
}

/// Through JACK, on six ports; two are linked to the speakers, and two to the virtual microphone.
TEST_F(MutedByOthers, AJackProgramIsHeardByThePortsThatItPlaysAndHasNoSwitch) {
    const auto file = session().folder() / "six.wav";
    writeWav(file, makeTone({.hz = {leftHz, rightHz, 700, 800, 900, 1100}, .db = playedDb}, 60));
    // Which outputs a JACK program finds by itself differs from one PipeWire to the next.
    const ChildProcess player = session().start(
        {"pw-jack", "mpv", "--no-video", "--no-config", "--ao=jack", "--jack-connect=no", file},
        "mpv");
    ASSERT_TRUE(waitUntil([] {
        const AudioGraph graph = session().graph();
        const GraphNode* const node = graph.node("mpv");
        return node != nullptr && node->outputPorts == 6;
    }));
    link("mpv:out_0", speakers.name + ":playback_FL");
    link("mpv:out_1", speakers.name + ":playback_FR");
    link("mpv:out_2", std::string(microphone) + ":input_FL");
    link("mpv:out_3", std::string(microphone) + ":input_FR");
    ASSERT_TRUE(atSpeakers.hears(0, leftHz, playedDb));
    ASSERT_TRUE(mic.hears(0, 700, playedDb)) << "by itself";

    mix({playing(player.pid())});

    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    EXPECT_TRUE(mic.hears(0, 700, playedDb)) << "not twice";
    EXPECT_FALSE(soundOf(player.pid()).value_or(ApplicationSound{}).canBeMuted);
    EXPECT_TRUE(atSpeakers.hears(0, leftHz, playedDb));
}

} // namespace
} // namespace velmora
