// Applications that are silenced on their own output while they are in the mix.

#include "MixerTest.h"

#include <algorithm>
#include <csignal>
#include <span>

namespace velmora {
namespace {

using namespace support;

/// The second copy of the mix goes to the interface, so that the speakers hold direct sound only.
class DirectMute : public ListeningMixerTest {
protected:
    DirectMute() { engine.setMonitoringSelection(interface4.name + "#3"); }

    /// An application that plays, heard on the speakers, and muted in the mix to come.
    AudioSource mutedSource(const ToneApp& app) {
        app.play("music", leftHz, rightHz, playedDb);
        EXPECT_TRUE(atSpeakers.hears(0, leftHz, playedDb));
        AudioSource source = playing(app.pid());
        engine.setDirectMuted(true, source);
        return source;
    }

    /// The level of a tone where it is loudest for a tenth of a second.
    static double loudestMoment(std::span<const float> samples, double hz) {
        constexpr std::size_t moment = 4800; // frames
        double loudest = toDb(0);
        for (std::size_t at = 0; at + moment <= samples.size(); at += moment / 2) {
            loudest = std::max(loudest, toneDb(samples.subspan(at, moment), hz));
        }
        return loudest;
    }
};

TEST_F(DirectMute, IsAbsentFromTheSpeakersAndStillInTheMix) {
    const ToneApp app(session());
    const ToneApp other(session());
    other.play("call", otherLeftHz, otherRightHz, playedDb);
    const AudioSource source = mutedSource(app);

    mix({source, playing(other.pid())});

    EXPECT_TRUE(atSpeakers.isSilentAt(0, leftHz));
    EXPECT_TRUE(atSpeakers.isSilentAt(1, rightHz));
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    EXPECT_TRUE(mic.hears(1, rightHz, playedDb));
    EXPECT_TRUE(atSpeakers.hears(0, otherLeftHz, playedDb)) << "the other one is not muted";
}

TEST_F(DirectMute, IsHeardAgainAfterTheStop) {
    const ToneApp app(session());
    mix({mutedSource(app)});
    EXPECT_TRUE(atSpeakers.isSilentAt(0, leftHz));

    engine.stop();

    EXPECT_TRUE(atSpeakers.hears(0, leftHz, playedDb));
    EXPECT_TRUE(mic.isSilentAt(0, leftHz));
}

TEST_F(DirectMute, SwitchesWhileTheMixRuns) {
    const ToneApp app(session());
    const AudioSource source = mutedSource(app);
    mix({source});
    EXPECT_TRUE(atSpeakers.isSilentAt(0, leftHz));

    engine.setDirectMuted(false, source);
    EXPECT_TRUE(atSpeakers.hears(0, leftHz, playedDb));
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));

    engine.setDirectMuted(true, source);
    EXPECT_TRUE(atSpeakers.isSilentAt(0, leftHz));
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
}

TEST_F(DirectMute, HoldsForAStreamThatStartsLater) {
    const ToneApp app(session());
    mix({mutedSource(app)});
    EXPECT_TRUE(atSpeakers.isSilentAt(0, leftHz));

    app.play("voice", otherLeftHz, otherRightHz, playedDb);

    EXPECT_TRUE(mic.hears(0, otherLeftHz, playedDb));
    EXPECT_TRUE(atSpeakers.isSilentAt(0, otherLeftHz));
}

TEST_F(DirectMute, IsNotRememberedForAnotherApplicationOfTheSameKind) {
    ToneApp app(session());
    mix({mutedSource(app)});
    EXPECT_TRUE(atSpeakers.isSilentAt(0, leftHz));

    const ToneApp later(session());
    later.play("music", otherLeftHz, otherRightHz, playedDb);

    EXPECT_TRUE(atSpeakers.hears(0, otherLeftHz, playedDb));
}

TEST_F(DirectMute, LetsNobodyBeHeardWhileTheMixIsBuiltAnew) {
    const ToneApp app(session());
    const ToneApp other(session());
    other.play("call", otherLeftHz, otherRightHz, playedDb);
    const AudioSource source = mutedSource(app);
    const AudioSource call = playing(other.pid());
    mix({source, call});
    ASSERT_TRUE(atSpeakers.isSilentAt(0, leftHz));
    ASSERT_TRUE(atSpeakers.waitForFreshSound());
    const std::size_t from = atSpeakers.frames();

    for (int round = 0; round < 20; ++round) {
        engine.remove(call);
        EXPECT_TRUE(mic.isSilentAt(0, otherLeftHz));
        engine.add(call);
        EXPECT_TRUE(mic.hears(0, otherLeftHz, playedDb));
    }

    EXPECT_LT(loudestMoment(atSpeakers.all().channel(0, from), leftHz), playedDb - 20);
}

TEST_F(DirectMute, EndsWhenTheMixerIsKilled) {
    const ToneApp app(session());
    app.play("music", leftHz, rightHz, playedDb);
    EXPECT_TRUE(atSpeakers.hears(0, leftHz, playedDb));
    ChildProcess mixer =
        session().start({VELMORA_MUTING_MIXER, std::to_string(app.pid())}, "muting-mixer");
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    EXPECT_TRUE(atSpeakers.isSilentAt(0, leftHz));

    mixer.kill();

    EXPECT_TRUE(atSpeakers.hears(0, leftHz, playedDb));
    EXPECT_TRUE(mic.isSilentAt(0, leftHz));
}

} // namespace
} // namespace velmora
