// The second copy of the mix, at the output that the user has chosen.

#include "MixerTest.h"

namespace velmora {
namespace {

using namespace support;

const SessionDevice headset{
    .name = "test.headset", .description = "Headset", .mediaClass = "Audio/Sink", .priority = 500};

/// Fed through the first two channels of the interface, so that no direct sound is anywhere else.
class Monitoring : public ListeningMixerTest {
protected:
    AudioSource source() { return input(interface4.description, 1, 2); }

    Feeder feeder{
        session(), interface4.name, {1, 2}, {.hz = {inputLeftHz, inputRightHz}, .db = playedDb}};
};

TEST_F(Monitoring, IsOnTheDefaultOutputAtItsOwnVolume) {
    engine.setHeadphoneVolume(0.25F); // −12.04 dB

    mix({source()});

    EXPECT_TRUE(atSpeakers.hears(0, inputLeftHz, -32.04));
    EXPECT_TRUE(atSpeakers.hears(1, inputRightHz, -32.04));
    EXPECT_TRUE(mic.hears(0, inputLeftHz, playedDb));
}

TEST_F(Monitoring, IsOnTheChosenPairOfTheInterfaceOnly) {
    const Recorder atInterface(session(), interface4.name, {1, 2, 3, 4});
    engine.setMonitoringSelection(interface4.name + "#3");

    mix({source()});

    EXPECT_TRUE(atInterface.hears(2, inputLeftHz, playedDb));
    EXPECT_TRUE(atInterface.hears(3, inputRightHz, playedDb));
    EXPECT_TRUE(atInterface.hears(0, inputLeftHz, playedDb)) << "as fed, not twice";
    EXPECT_TRUE(atSpeakers.isSilentAt(0, inputLeftHz));
}

TEST_F(Monitoring, MovesWhenAnotherOutputIsChosenWhileTheMixRuns) {
    mix({source()});
    EXPECT_TRUE(atSpeakers.hears(0, inputLeftHz, playedDb));
    const Recorder atInterface(session(), interface4.name, {3, 4});

    engine.setMonitoringSelection(interface4.name + "#3");

    EXPECT_TRUE(atInterface.hears(0, inputLeftHz, playedDb));
    EXPECT_TRUE(atSpeakers.isSilentAt(0, inputLeftHz));
    EXPECT_TRUE(mic.hears(0, inputLeftHz, playedDb));
}

TEST_F(Monitoring, FollowsTheDefaultOutput) {
    session().add(headset);
    const Recorder atHeadset(session(), headset.name, {1, 2});
    mix({source()});
    EXPECT_TRUE(atSpeakers.hears(0, inputLeftHz, playedDb));

    session().setDefaultSink(headset.name);

    EXPECT_TRUE(atHeadset.hears(0, inputLeftHz, playedDb));
    EXPECT_TRUE(atSpeakers.isSilentAt(0, inputLeftHz));
    EXPECT_TRUE(mic.hears(0, inputLeftHz, playedDb));

    session().remove(headset.name);
    EXPECT_TRUE(atSpeakers.hears(0, inputLeftHz, playedDb));
}

TEST_F(Monitoring, IsLeftOutWithoutAMessageWhenThePairIsBeyondTheDevice) {
    engine.setMonitoringSelection(speakers.name + "#3");

    mix({source()});

    EXPECT_TRUE(mic.hears(0, inputLeftHz, playedDb));
    EXPECT_TRUE(atSpeakers.isSilentAt(0, inputLeftHz));
}

} // namespace
} // namespace velmora
