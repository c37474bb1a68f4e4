// Who records the microphone, what somebody makes of it, and applications that come back.

#include "MixerTest.h"

#include "engine/SourceCondition.h"

namespace velmora {
namespace {

using namespace support;

class AudienceOfAMix : public MixerTest {
protected:
    void pactl(std::vector<std::string> words) {
        words.insert(words.begin(), "pactl");
        runToEnd(words, session().environment());
    }
    SourceCondition conditionOf(const AudioSource& source) {
        return velmora::conditionOf(platform, engine, source);
    }
    const Audience& audience() { return engine.audience(); }

    ToneApp app{session()};
};

TEST_F(AudienceOfAMix, IsTheApplicationThatHearsItself) {
    app.play("music", leftHz, rightHz, playedDb);
    const AudioSource source = playing(app.pid());
    mix({source});
    EXPECT_FALSE(audience().includes(source));

    app.hear("ear", microphone);

    EXPECT_TRUE(waitUntil([&] { return audience().includes(source); }));
    app.stop("ear");
    EXPECT_TRUE(waitUntil([&] { return !audience().includes(source); }));
}

TEST_F(AudienceOfAMix, IsMissingUntilAProgramRecordsAndNoLevelMeterIsOne) {
    const ToneApp meter(session());
    app.play("music", leftHz, rightHz, playedDb);
    mix({playing(app.pid())});
    EXPECT_TRUE(waitUntil([&] { return audience().isMissing(); }));

    meter.measure("meter", microphone);
    EXPECT_TRUE(waitUntil([] {
        const AudioGraph graph = session().graph();
        return std::ranges::any_of(graph.links(), [](const GraphLink& link) {
            return link.from == microphone && link.to == "meter";
        });
    }));
    EXPECT_TRUE(audience().isMissing());
    const PulseRecorder call(session(), microphone);
    EXPECT_TRUE(waitUntil([&] { return !audience().isMissing(); }));
    EXPECT_TRUE(call.hears(0, leftHz, playedDb));
}

TEST_F(AudienceOfAMix, HearsWhatSomebodyMadeOfTheMicrophoneUntilThatIsTakenBack) {
    const Recorder mic(session(), microphone, {1, 2});
    const PulseRecorder call(session(), microphone);
    app.play("music", leftHz, rightHz, playedDb);
    mix({playing(app.pid())});
    ASSERT_TRUE(call.hears(0, leftHz, playedDb));
    EXPECT_EQ(audience().reduction(), std::nullopt);

    pactl({"set-source-volume", microphone, "50%"}); // its cube
    EXPECT_TRUE(waitUntil([&] { return audience().reduction().has_value(); }));
    EXPECT_NEAR(audience().reduction().value_or(DeviceVolume{}).linear, 0.125F, 0.001F);
    EXPECT_TRUE(call.hears(0, leftHz, playedDb - 18.06));
    EXPECT_TRUE(mic.hears(1, rightHz, playedDb - 18.06));

    pactl({"set-source-mute", microphone, "1"});
    EXPECT_TRUE(waitUntil([&] { return audience().reduction().value_or(DeviceVolume{}).isMuted; }));
    EXPECT_TRUE(call.isSilentAt(0, leftHz));

    engine.restoreMicrophoneVolume();
    EXPECT_TRUE(call.hears(0, leftHz, playedDb));
    EXPECT_TRUE(waitUntil([&] { return !audience().reduction(); }));
}

TEST_F(AudienceOfAMix, ASourceIsGoneWithItsProgramAndTheOneStartedAgainTakesItsPlace) {
    const Recorder mic(session(), microphone, {1, 2});
    app.play("music", leftHz, rightHz, playedDb);
    const AudioSource source = playing(app.pid());
    setGainDb(-6, source);
    mix({source});
    ASSERT_TRUE(mic.hears(0, leftHz, playedDb - 6));
    EXPECT_EQ(conditionOf(source), SourceCondition::fine);

    app.end();
    EXPECT_TRUE(waitUntil([&] { return conditionOf(source) == SourceCondition::gone; }));
    EXPECT_EQ(successorOf(platform, engine, source), std::nullopt);

    const ToneApp again(session());
    again.play("music", leftHz, rightHz, playedDb);
    const AudioSource successor = playing(again.pid());
    EXPECT_EQ(successorOf(platform, engine, source), successor);
    engine.replace(source, successor);

    EXPECT_TRUE(mic.hears(0, leftHz, playedDb - 6));
    EXPECT_EQ(conditionOf(successor), SourceCondition::fine);
}

} // namespace
} // namespace velmora
