// What the mix does when applications, devices and services come and go under it.

#include "MixerTest.h"

namespace velmora {
namespace {

using namespace support;

class Recovery : public ListeningMixerTest {
protected:
    Recovery() { engine.setMonitoringSelection(interface4.name + "#3"); }

    void TearDown() override {
        engine.stop();
        session().startServices(); // what a failed test left dead
        SessionTest::TearDown();
    }
};

TEST_F(Recovery, ASecondStreamOfAnApplicationJoinsTheMix) {
    const ToneApp app(session());
    app.play("music", leftHz, rightHz, playedDb);
    mix({playing(app.pid())});
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));

    app.play("voice", otherLeftHz, otherRightHz, playedDb);

    EXPECT_TRUE(mic.hears(0, otherLeftHz, playedDb));
    EXPECT_TRUE(mic.hears(1, otherRightHz, playedDb));
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
}

TEST_F(Recovery, AnApplicationThatPlaysAgainIsHeardAgain) {
    const ToneApp app(session());
    app.play("music", leftHz, rightHz, playedDb);
    mix({playing(app.pid())});
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    app.stop("music");
    EXPECT_TRUE(mic.isSilentAt(0, leftHz));

    app.play("music", otherLeftHz, otherRightHz, playedDb);

    EXPECT_TRUE(mic.hears(0, otherLeftHz, playedDb));
    EXPECT_TRUE(mic.hears(1, otherRightHz, playedDb));
}

TEST_F(Recovery, AnInputThatReturnsIsHeardAgainAndTheOthersGoOn) {
    const SessionDevice box{.name = "test.box",
                            .description = "Stage Box",
                            .mediaClass = "Audio/Duplex",
                            .positions = {"AUX0", "AUX1"}};
    session().add(box);
    const Feeder feeder(
        session(), box.name, {1, 2}, {.hz = {inputLeftHz, inputRightHz}, .db = playedDb});
    const ToneApp app(session());
    app.play("music", leftHz, rightHz, playedDb);
    mix({input(box.description, 1, 2), playing(app.pid())});
    EXPECT_TRUE(mic.hears(0, inputLeftHz, playedDb));

    session().remove(box.name);
    EXPECT_TRUE(mic.isSilentAt(0, inputLeftHz));
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));

    session().add(box);
    EXPECT_TRUE(mic.hears(0, inputLeftHz, playedDb));
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    session().remove(box.name);
}

TEST_F(Recovery, AMicrophoneThatReturnsHasTheMixAgain) {
    const SessionDevice replacement{.name = microphone,
                                    .description = "Velmora Microphone",
                                    .mediaClass = "Audio/Source/Virtual",
                                    .priority = 1};
    const ToneApp app(session());
    app.play("music", leftHz, rightHz, playedDb);
    mix({playing(app.pid())});
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));

    session().remove(microphone);
    session().add(replacement);

    EXPECT_TRUE(mic.waitForFreshSound());
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    EXPECT_TRUE(mic.hears(1, rightHz, playedDb));
}

TEST_F(Recovery, TheMixComesBackAfterTheSoundServerWasKilled) {
    const Feeder before(
        session(), interface4.name, {1, 2}, {.hz = {inputLeftHz, inputRightHz}, .db = playedDb});
    mix({input(interface4.description, 1, 2)});
    EXPECT_TRUE(mic.hears(0, inputLeftHz, playedDb));

    session().killDaemon();
    session().startServices();

    // Clients of the old server end with it; the mixer does not.
    const Feeder after(
        session(), interface4.name, {1, 2}, {.hz = {inputLeftHz, inputRightHz}, .db = -30});
    const Recorder newMic(session(), microphone, {1, 2});
    EXPECT_TRUE(newMic.hears(0, inputLeftHz, -30));
    EXPECT_TRUE(newMic.hears(1, inputRightHz, -30));
    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(engine.lastError(), std::nullopt);
}

TEST_F(Recovery, TheMixIsThereAfterTheSessionManagerWasKilled) {
    const Feeder feeder(
        session(), interface4.name, {1, 2}, {.hz = {inputLeftHz, inputRightHz}, .db = playedDb});
    mix({input(interface4.description, 1, 2)});
    EXPECT_TRUE(mic.hears(0, inputLeftHz, playedDb));

    session().killManager();
    session().startServices();

    // The new manager takes the devices' ports away and makes them anew. A client that is linked to
    // them at that time stays linked without sound, until it is started again; the mixer does not.
    const auto newClientsHearTheMix = [this] {
        const Feeder newFeeder(session(),
                               interface4.name,
                               {1, 2},
                               {.hz = {otherLeftHz, otherRightHz}, .db = playedDb});
        const Recorder newMic(session(), microphone, {1, 2});
        return newMic.hears(0, otherLeftHz, playedDb, 0.5, std::chrono::seconds(3)) &&
               newMic.hears(1, otherRightHz, playedDb, 0.5, std::chrono::seconds(3));
    };
    EXPECT_TRUE(waitUntil(newClientsHearTheMix));
    EXPECT_TRUE(engine.isRunning());
}

} // namespace
} // namespace velmora
