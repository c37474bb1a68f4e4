// Where applications play once they are no longer silenced: where they would have played anyway.

#include "MixerTest.h"
#include "SessionMemory.h"

#include <csignal>

namespace velmora {
namespace {

using namespace support;

/// An application that the user has sent to a headset. The second copy of the mix goes to the
/// interface, so that speakers and headset hold direct sound only.
class MutedRoute : public ListeningMixerTest {
protected:
    MutedRoute() {
        engine.setMonitoringSelection(interface4.name + "#3");
        session().add(headset);
        app.play("one", leftHz, rightHz, playedDb);
        // On the headset already where a test before has chosen it.
        EXPECT_TRUE(waitUntil([this] {
            const AudioGraph graph = session().graph();
            return graph.linked("one", speakers.name) || graph.linked("one", headset.name);
        }));
        sendTo(session(), "one", headset.name);
        EXPECT_TRUE(atHeadset().hears(0, leftHz, playedDb));
    }
    ~MutedRoute() override {
        engine.stop();
        if (session().graph().node(headset.name) != nullptr) {
            session().remove(headset.name);
        }
    }

    [[nodiscard]] Recorder atHeadset() const { return {session(), headset.name, {1}}; }

    AudioSource muted(const ToneApp& application) {
        AudioSource source = playing(application.pid());
        engine.setDirectMuted(true, source);
        return source;
    }

    ChildProcess mutingMixer(const ToneApp& application) {
        return session().start({VELMORA_MUTING_MIXER, std::to_string(application.pid())},
                               "muting-mixer");
    }

    /// The stored choice is the headset, which is not there; the application plays on the speakers.
    void takeHeadsetAway() {
        app.stop("one");
        session().remove(headset.name);
        app.play("two", otherLeftHz, otherRightHz, playedDb);
        EXPECT_TRUE(atSpeakers.hears(0, otherLeftHz, playedDb));
    }

    const SessionDevice headset{
        .name = "test.headset", .description = "Headset", .mediaClass = "Audio/Sink"};
    ToneApp app{session()};
};

TEST_F(MutedRoute, IsKeptForATrackThatBeginsWhileMuted) {
    mix({muted(app)});
    ASSERT_TRUE(atHeadset().isSilentAt(0, leftHz));

    app.stop("one");
    app.play("two", otherLeftHz, otherRightHz, playedDb);
    ASSERT_TRUE(mic.hears(0, otherLeftHz, playedDb));
    EXPECT_TRUE(atHeadset().isSilentAt(0, otherLeftHz));
    EXPECT_TRUE(atSpeakers.isSilentAt(0, otherLeftHz));

    engine.stop();
    EXPECT_TRUE(atHeadset().hears(0, otherLeftHz, playedDb));
    EXPECT_TRUE(atSpeakers.isSilentAt(0, otherLeftHz));
}

TEST_F(MutedRoute, IsKeptForATrackThatBeginsAfterwards) {
    mix({muted(app)});
    ASSERT_TRUE(atHeadset().isSilentAt(0, leftHz));
    app.stop("one");
    engine.stop();

    app.play("two", otherLeftHz, otherRightHz, playedDb);

    EXPECT_TRUE(atHeadset().hears(0, otherLeftHz, playedDb));
    EXPECT_TRUE(atSpeakers.isSilentAt(0, otherLeftHz));
}

TEST_F(MutedRoute, IsKeptForThePlayersNextRun) {
    const auto file = session().folder() / "song.wav";
    writeWav(file, makeTone({.hz = {otherLeftHz, otherRightHz}, .db = playedDb}, 60));
    const auto player = [&] {
        return session().start({"mpv", "--no-video", "--no-config", "--ao=pulse", file}, "mpv");
    };
    {
        const ChildProcess first = player();
        ASSERT_TRUE(waitUntil([] { return session().graph().linked("mpv", speakers.name); }));
        sendTo(session(), "mpv", headset.name);
        ASSERT_TRUE(atHeadset().hears(0, otherLeftHz, playedDb));
        const AudioSource source = playing(first.pid());
        engine.setDirectMuted(true, source);
        mix({source});
        ASSERT_TRUE(atHeadset().isSilentAt(0, otherLeftHz));
    }
    engine.stop();

    const ChildProcess second = player();

    EXPECT_TRUE(atHeadset().hears(0, otherLeftHz, playedDb));
    EXPECT_TRUE(atSpeakers.isSilentAt(0, otherLeftHz));
}

TEST_F(MutedRoute, IsKeptForAnotherApplicationOfTheSameKind) {
    const SessionMemory before = memoryOf(session());
    mix({muted(app)});
    ASSERT_TRUE(atHeadset().isSilentAt(0, leftHz));

    const ToneApp other(session());
    other.play("two", otherLeftHz, otherRightHz, playedDb);

    EXPECT_TRUE(atHeadset().hears(0, otherLeftHz, playedDb));
    EXPECT_EQ(memoryOf(session(), before).files, before.files);
}

TEST_F(MutedRoute, IsKeptWhenTheStreamItselfIsElsewhere) {
    const ToneApp other(session());
    other.play("two", otherLeftHz, otherRightHz, playedDb);
    ASSERT_TRUE(atHeadset().hears(0, otherLeftHz, playedDb));
    sendTo(session(), "two", speakers.name);
    ASSERT_TRUE(atSpeakers.hears(0, otherLeftHz, playedDb));
    const SessionMemory before = memoryOf(session());
    const AudioSource source = muted(app);
    mix({source});
    ASSERT_TRUE(atHeadset().isSilentAt(0, leftHz));

    engine.setDirectMuted(false, source);

    EXPECT_TRUE(atHeadset().hears(0, leftHz, playedDb));
    const SessionMemory after = memoryOf(session(), before);
    EXPECT_EQ(after.files, before.files);
    EXPECT_EQ(after.metadata, before.metadata);
}

TEST_F(MutedRoute, IsKeptWhenItWasChosenAMomentBefore) {
    sendTo(session(), "one", speakers.name);
    ASSERT_TRUE(atSpeakers.hears(0, leftHz, playedDb));
    const AudioSource source = muted(app);
    sendTo(session(), "one", headset.name);
    // In force, but not in the session manager's file for most of a second.
    ASSERT_TRUE(waitUntil([this] { return session().graph().linked("one", headset.name); }));
    mix({source});
    ASSERT_TRUE(atSpeakers.isSilentAt(0, leftHz));
    engine.stop();
    app.stop("one");

    app.play("two", otherLeftHz, otherRightHz, playedDb);

    EXPECT_TRUE(atHeadset().hears(0, otherLeftHz, playedDb));
}

TEST_F(MutedRoute, IsKeptWhileItsDeviceIsAway) {
    takeHeadsetAway();
    const SessionMemory before = memoryOf(session());
    const AudioSource source = muted(app);
    mix({source});
    ASSERT_TRUE(atSpeakers.isSilentAt(0, otherLeftHz));
    EXPECT_EQ(memoryOf(session(), before).files, before.files);

    engine.setDirectMuted(false, source);

    EXPECT_TRUE(atSpeakers.hears(0, otherLeftHz, playedDb));
    const SessionMemory after = memoryOf(session(), before);
    EXPECT_EQ(after.files, before.files);
    EXPECT_EQ(after.metadata, before.metadata);
}

TEST_F(MutedRoute, IsKeptWhileItsDeviceIsAwayAndTheMuteEndsAtOnce) {
    takeHeadsetAway();
    const SessionMemory before = memoryOf(session());
    const AudioSource source = muted(app);
    mix({source});
    ASSERT_TRUE(atSpeakers.isSilentAt(0, otherLeftHz));

    engine.setDirectMuted(false, source);

    EXPECT_TRUE(atSpeakers.hears(0, otherLeftHz, playedDb));
    EXPECT_EQ(memoryOf(session()).files, before.files);
}

TEST_F(MutedRoute, IsKeptWhenTheMixerEndsOrIsKilled) {
    takeHeadsetAway();
    const SessionMemory before = memoryOf(session());
    for (const int signal : {SIGTERM, SIGKILL}) {
        const ChildProcess mixer = mutingMixer(app);
        ASSERT_TRUE(mic.hears(0, otherLeftHz, playedDb));
        ASSERT_TRUE(atSpeakers.isSilentAt(0, otherLeftHz));

        ::kill(mixer.pid(), signal);

        EXPECT_TRUE(atSpeakers.hears(0, otherLeftHz, playedDb));
        static_cast<void>(memoryOf(session())); // what the mute has changed is written by then
        const SessionMemory after = memoryOf(session(), before);
        EXPECT_EQ(after.files, before.files) << signal;
        EXPECT_EQ(after.metadata, before.metadata) << signal;
    }
}

/// While the choice is being kept, and the device that it names is not there.
TEST_F(MutedRoute, EndsNoStreamThatMayNotBeMovedWhileItIsKept) {
    takeHeadsetAway();
    mix({muted(app)});

    std::vector<std::string> voices;
    for (int i = 0; i < 10; ++i) {
        voices.push_back("voice" + std::to_string(i));
        app.pin(voices.back(), otherLeftHz, otherRightHz, playedDb - 40);
        static_cast<void>(waitUntil([] { return false; }, std::chrono::milliseconds(100)));
    }

    for (const std::string& voice : voices) {
        EXPECT_TRUE(waitUntil([&] { return session().graph().linked(voice, speakers.name); }))
            << voice;
    }
}

} // namespace
} // namespace velmora
