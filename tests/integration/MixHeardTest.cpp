// What a program that records the virtual microphone hears of each source.

#include "MixerTest.h"

#include "support/Prediction.h"

#include <algorithm>
#include <cmath>

namespace velmora {
namespace {

using namespace support;

class MixHeard : public ListeningMixerTest {};

TEST_F(MixHeard, AnApplicationAtItsGainOnBothSides) {
    const ToneApp app(session());
    app.play("music", leftHz, rightHz, playedDb);
    const AudioSource source = playing(app.pid());
    setGainDb(-6, source);

    mix({source});

    EXPECT_TRUE(mic.hears(0, leftHz, -26));
    EXPECT_TRUE(mic.hears(1, rightHz, -26));
    EXPECT_TRUE(mic.isSilentAt(0, rightHz));
}

TEST_F(MixHeard, ACallProgramRecordsTheMixThroughThePulseProtocol) {
    const PulseRecorder call(session(), microphone);
    const ToneApp app(session());
    app.play("music", leftHz, rightHz, playedDb);

    mix({playing(app.pid())});

    EXPECT_TRUE(call.hears(0, leftHz, playedDb));
    EXPECT_TRUE(call.hears(1, rightHz, playedDb));
}

TEST_F(MixHeard, TwoApplicationsOfBothProtocolsEachAtItsGain) {
    const NativePlayer native(session(), {.hz = {leftHz, rightHz}, .db = playedDb});
    const PulsePlayer pulse(session(), {.hz = {otherLeftHz, otherRightHz}, .db = playedDb});
    const AudioSource first = playing(native.pid());
    const AudioSource second = playing(pulse.pid());
    setGainDb(-3, first);
    setGainDb(-12, second);

    mix({first, second});

    EXPECT_TRUE(mic.hears(0, leftHz, -23));
    EXPECT_TRUE(mic.hears(1, rightHz, -23));
    EXPECT_TRUE(mic.hears(0, otherLeftHz, -32));
    EXPECT_TRUE(mic.hears(1, otherRightHz, -32));
}

TEST_F(MixHeard, AnotherGainWhileItRuns) {
    const ToneApp app(session());
    app.play("music", leftHz, rightHz, playedDb);
    const AudioSource source = playing(app.pid());
    mix({source});
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));

    setGainDb(-14, source);

    EXPECT_TRUE(mic.hears(0, leftHz, -34));
}

TEST_F(MixHeard, OneSourcesEffectsOnThatSourceOnly) {
    constexpr double lowHz = 61; // well below the 150 Hz corner
    const FXParams thin{.lowcut = 2, .autoGain = false};
    const ToneApp low(session());
    const ToneApp high(session());
    low.play("bass", lowHz, lowHz, playedDb);
    high.play("music", leftHz, rightHz, playedDb);
    const AudioSource thinned = playing(low.pid());
    engine.setFX(thin, thinned);

    mix({thinned, playing(high.pid())});

    const Tone played{.hz = {lowHz, lowHz}, .db = playedDb};
    EXPECT_TRUE(mic.hears(0, lowHz, predictedDb(played, 0, thin, 2).front()));
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
}

TEST_F(MixHeard, EffectsAsTheChainMakesThemAndNothingOfThemWhenBypassed) {
    const FXParams rich{.tilt = -1,
                        .comp = 3,
                        .autoGain = false,
                        .manualDB = -4,
                        .reverbChar = 1,
                        .reverbMix = 0.5F};
    const ToneApp app(session());
    app.play("music", leftHz, rightHz, playedDb);
    const AudioSource source = playing(app.pid());
    engine.setFX(rich, source);
    setGainDb(3, source);

    mix({source});

    const auto predicted = predictedDb({.hz = {leftHz, rightHz}, .db = playedDb}, 3, rich, 6);
    EXPECT_TRUE(mic.hears(0, leftHz, predicted[0]));
    EXPECT_TRUE(mic.hears(1, rightHz, predicted[1]));

    engine.setFxBypassed(true);
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb + 3));
}

TEST_F(MixHeard, TheReverbsTailAfterTheApplicationFellSilent) {
    const FXParams hall{.autoGain = false, .reverbChar = 2, .reverbMix = 1};
    const ToneApp app(session());
    app.play("music", leftHz, leftHz, playedDb);
    const AudioSource source = playing(app.pid());
    engine.setFX(hall, source);
    mix({source});
    const Tone played{.hz = {leftHz, leftHz}, .db = playedDb};
    EXPECT_TRUE(mic.hears(0, leftHz, predictedDb(played, 0, hall, 6).front()));

    app.mute("music");
    const std::size_t mutedAt = mic.frames();

    // The tail loses a factor of 0.92 each time round a comb of 31 ms, that is 60 dB in 2.6 s;
    // without it the sound would be gone within a few blocks. It does not fall evenly: one moment
    // of silence is not yet its end.
    EXPECT_TRUE(waitUntil([&] { return mic.frames() >= mutedAt + 3 * std::size_t{48000}; }));
    EXPECT_TRUE(mic.isSilentAt(0, leftHz, -70));
    const auto heard = mic.all().channel(0, mutedAt);
    constexpr std::size_t window = 2400; // 50 ms
    int audible = 0;
    for (std::size_t at = 0; at + window <= heard.size(); at += window) {
        audible += toneDb(std::span(heard).subspan(at, window), leftHz) > -70 ? 1 : 0;
    }
    EXPECT_GE(audible, 15);
}

TEST_F(MixHeard, APairOfTheInterfaceOnItsTwoSides) {
    const Feeder feeder(
        session(), interface4.name, {3, 4}, {.hz = {inputLeftHz, inputRightHz}, .db = playedDb});
    const AudioSource source = input(interface4.description, 3, 2);
    setGainDb(-5, source);

    mix({source});

    EXPECT_TRUE(mic.hears(0, inputLeftHz, -25));
    EXPECT_TRUE(mic.hears(1, inputRightHz, -25));
    EXPECT_TRUE(mic.isSilentAt(1, inputLeftHz));
}

TEST_F(MixHeard, ASingleChannelOnBothSides) {
    const Feeder feeder(
        session(), interface4.name, {1, 2}, {.hz = {inputLeftHz, inputRightHz}, .db = playedDb});

    mix({input(interface4.description, 2, 1)});

    EXPECT_TRUE(mic.hears(0, inputRightHz, playedDb));
    EXPECT_TRUE(mic.hears(1, inputRightHz, playedDb));
    EXPECT_TRUE(mic.isSilentAt(0, inputLeftHz));
}

TEST_F(MixHeard, TheLastChannelOnBothSidesWhenThePairEndsBeyondTheDevice) {
    const Feeder feeder(session(), interface4.name, {4}, {.hz = {inputLeftHz}, .db = playedDb});

    mix({input(interface4.description, 4, 2)});

    EXPECT_TRUE(mic.hears(0, inputLeftHz, playedDb));
    EXPECT_TRUE(mic.hears(1, inputLeftHz, playedDb));
}

TEST_F(MixHeard, TheFirstTwoChannelsOfAWholeDevice) {
    const Feeder feeder(session(),
                        interface4.name,
                        {1, 2, 3},
                        {.hz = {inputLeftHz, inputRightHz, otherLeftHz}, .db = playedDb});

    mix({DeviceSource{.id = deviceId(interface4.description), .name = interface4.description}});

    EXPECT_TRUE(mic.hears(0, inputLeftHz, playedDb));
    EXPECT_TRUE(mic.hears(1, inputRightHz, playedDb));
    EXPECT_TRUE(mic.isSilentAt(0, otherLeftHz));
}

TEST_F(MixHeard, TheStreamVolumeInTheMicrophoneOnly) {
    const Feeder feeder(
        session(), interface4.name, {1, 2}, {.hz = {inputLeftHz, inputRightHz}, .db = playedDb});
    engine.setStreamVolume(0.5F); // −6.02 dB

    mix({input(interface4.description, 1, 2)});

    EXPECT_TRUE(mic.hears(0, inputLeftHz, -26.02));
    EXPECT_TRUE(atSpeakers.hears(0, inputLeftHz, playedDb));
}

TEST_F(MixHeard, ALoudSumHeldNearTheCeiling) {
    constexpr float ceiling = 0.8912509F; // −1 dB
    const ToneApp one(session());
    const ToneApp other(session());
    one.play("music", leftHz, rightHz, -2);
    other.play("music", otherLeftHz, otherRightHz, -2);

    mix({playing(one.pid()), playing(other.pid())});

    EXPECT_TRUE(waitUntil([&] { return mic.toneDb(0, otherLeftHz) > -20; }));
    EXPECT_TRUE(mic.waitForFreshSound());
    float peak = 0;
    for (const float sample : mic.latest(0.25).samples) {
        peak = std::max(peak, std::abs(sample));
    }
    EXPECT_GT(peak, 0.8F);
    EXPECT_LT(peak, ceiling * 1.01F);
}

TEST_F(MixHeard, NothingMoreAfterTheStop) {
    const ToneApp app(session());
    app.play("music", leftHz, rightHz, playedDb);
    mix({playing(app.pid())});
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));

    engine.stop();

    EXPECT_TRUE(mic.isSilentAt(0, leftHz));
    EXPECT_TRUE(atSpeakers.hears(0, leftHz, playedDb)) << "the application's own sound goes on";
}

} // namespace
} // namespace velmora
