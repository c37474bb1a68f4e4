// What a mute of an application's own output leaves behind: nothing, soon.

#include "MixerTest.h"
#include "SessionMemory.h"

#include <chrono>
#include <csignal>

namespace velmora {
namespace {

using namespace support;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// How long an unmuted application may still be silent. A busy machine gets two more tries.
constexpr auto bound = 500ms;
constexpr int tries = 3;

class MuteTraces : public ListeningMixerTest {
protected:
    MuteTraces() {
        engine.setMonitoringSelection(interface4.name + "#3");
        app.play("music", leftHz, rightHz, playedDb);
        EXPECT_TRUE(atSpeakers.hears(0, leftHz, playedDb));
    }

    AudioSource mutedSource() {
        AudioSource source = playing(app.pid());
        engine.setDirectMuted(true, source);
        return source;
    }

    ChildProcess mutingMixer() {
        return session().start({VELMORA_MUTING_MIXER, std::to_string(app.pid())}, "muting-mixer");
    }

    /// From `unmute` until the application has been on the speakers for 50 ms.
    template <typename Unmute>
    Clock::duration timeToBeHeard(Unmute unmute) {
        EXPECT_TRUE(atSpeakers.isSilentAt(0, leftHz));
        const auto begin = Clock::now();
        unmute();
        EXPECT_TRUE(waitUntil([&] {
            return std::abs(toneDb(atSpeakers.latest(0.05).channel(0), leftHz) - playedDb) < 1;
        }));
        return Clock::now() - begin;
    }

    /// The shortest time of a few tries.
    template <typename Mute, typename Unmute>
    Clock::duration bestTime(Mute mute, Unmute unmute) {
        auto best = Clock::duration::max();
        for (int count = 0; count < tries && best > bound; ++count) {
            mute();
            best = std::min(best, timeToBeHeard(unmute));
        }
        return best;
    }

    const SessionDevice headset{
        .name = "test.headset", .description = "Headset", .mediaClass = "Audio/Sink"};
    ToneApp app{session()};
};

TEST_F(MuteTraces, TheSessionManagerRemembersNothingOfIt) {
    const SessionMemory before = memoryOf(session());
    const AudioSource source = mutedSource();
    mix({source});
    ASSERT_TRUE(atSpeakers.isSilentAt(0, leftHz));
    const SessionMemory during = memoryOf(session());

    engine.stop();

    const SessionMemory after = memoryOf(session());
    EXPECT_EQ(during.files, before.files);
    EXPECT_NE(during.metadata, before.metadata) << "this is where it is muted";
    EXPECT_EQ(after.files, before.files);
    EXPECT_EQ(after.metadata, before.metadata);
}

TEST_F(MuteTraces, TheUsersOwnTargetIsThereAgainAfterwards) {
    session().add(headset);
    const Recorder atHeadset(session(), headset.name, {1});
    sendTo(session(), "music", headset.name);
    ASSERT_TRUE(atHeadset.hears(0, leftHz, playedDb));
    const SessionMemory before = memoryOf(session());
    mix({mutedSource()});
    ASSERT_TRUE(atHeadset.isSilentAt(0, leftHz));

    engine.stop();

    EXPECT_TRUE(atHeadset.hears(0, leftHz, playedDb));
    EXPECT_EQ(memoryOf(session()).metadata, before.metadata);
    session().remove(headset.name);
}

TEST_F(MuteTraces, IsAudibleWithinHalfASecondAfterItWasSwitchedOff) {
    const AudioSource source = mutedSource();
    mix({source});

    EXPECT_LE(bestTime([&] { engine.setDirectMuted(true, source); },
                       [&] { engine.setDirectMuted(false, source); }),
              bound);
}

TEST_F(MuteTraces, IsAudibleWithinHalfASecondAfterTheStop) {
    const AudioSource source = mutedSource();

    EXPECT_LE(bestTime([&] { mix({source}); }, [&] { engine.stop(); }), bound);
}

TEST_F(MuteTraces, IsAudibleWithinHalfASecondAfterTheMixerEndedOrWasKilled) {
    for (const int signal : {SIGTERM, SIGKILL}) {
        std::optional<ChildProcess> mixer;
        EXPECT_LE(bestTime(
                      [&] {
                          mixer.emplace(mutingMixer());
                          EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
                      },
                      [&] { ::kill(mixer->pid(), signal); }),
                  bound)
            << signal;
    }
}

TEST_F(MuteTraces, AKilledMixerLeavesNothingEither) {
    const SessionMemory before = memoryOf(session());
    const ChildProcess mixer = mutingMixer();
    ASSERT_TRUE(mic.hears(0, leftHz, playedDb));
    ASSERT_TRUE(atSpeakers.isSilentAt(0, leftHz));

    ::kill(mixer.pid(), SIGKILL);

    EXPECT_TRUE(atSpeakers.hears(0, leftHz, playedDb));
    const SessionMemory after = memoryOf(session());
    EXPECT_EQ(after.files, before.files);
    EXPECT_EQ(after.metadata, before.metadata);
}

TEST_F(MuteTraces, AKilledMixerGivesTheUsersOwnTargetBack) {
    session().add(headset);
    const Recorder atHeadset(session(), headset.name, {1});
    sendTo(session(), "music", headset.name);
    ASSERT_TRUE(atHeadset.hears(0, leftHz, playedDb));
    const SessionMemory before = memoryOf(session());
    const ChildProcess mixer = mutingMixer();
    ASSERT_TRUE(mic.hears(0, leftHz, playedDb));
    ASSERT_TRUE(atHeadset.isSilentAt(0, leftHz));

    ::kill(mixer.pid(), SIGKILL);

    EXPECT_TRUE(atHeadset.hears(0, leftHz, playedDb));
    EXPECT_EQ(memoryOf(session()).metadata, before.metadata);
    session().remove(headset.name);
}

} // namespace
} // namespace velmora
