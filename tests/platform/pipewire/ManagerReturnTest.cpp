// A session manager that is started again beside what is ours. The devices go and come with it, as
// sound cards do.

#include "BackendTest.h"

namespace velmora {
namespace {

using namespace support;

constexpr double otherHz = 640;

/// WirePlumber 0.4.13 links nothing of anybody's while it waits for one device, so each test looks
/// at a program that the mixer has nothing to do with. It starts afterwards: what plays through the
/// restart is left unlinked now and then, with or without a mixer.
class ManagerReturn : public BackendTest {
protected:
    void TearDown() override {
        session().startServices(); // what a failed test left dead
        BackendTest::TearDown();
    }

    void replaceManager() {
        session().killManagerWithDevices();
        EXPECT_TRUE(waitUntil([&] { return !devices().isAvailable(); }));
        session().startServices();
    }

    static bool isSentToMuteSink(const std::string& stream) {
        const AudioGraph graph = session().graph();
        return std::ranges::any_of(graph.links(), [&](const GraphLink& link) {
            return link.from == stream && link.to.starts_with("velmora.mute.");
        });
    }

    static bool isLaterProgramHeard() {
        const ToneApp later(session());
        later.play("later", otherHz, otherHz, playedDb);
        return Recorder(session(), speakers.name, {1}).hears(0, otherHz, playedDb);
    }
};

TEST_F(ManagerReturn, LinksOthersAfterAMixIntoTheMicrophone) {
    const auto output = play(microphone);
    ASSERT_TRUE(Recorder(session(), microphone, {1}).hears(0, 440, playedDb));

    replaceManager();

    EXPECT_TRUE(isLaterProgramHeard());
    EXPECT_TRUE(Recorder(session(), microphone, {1}).hears(0, 440, playedDb));
}

TEST_F(ManagerReturn, LinksOthersAfterTheMicrophoneWasRecordedWithoutAMix) {
    ASSERT_TRUE(Recorder(session(), microphone, {1}).waitForFreshSound());

    replaceManager();

    EXPECT_TRUE(isLaterProgramHeard());
    const AudioGraph graph = session().graph();
    EXPECT_EQ(std::ranges::count(graph.nodes(), microphone, &GraphNode::name), 1);
}

TEST_F(ManagerReturn, LinksOthersAfterAMuteThatLasts) {
    const ToneApp app(session());
    app.play("music", 440, 440, playedDb);
    const HeardTap tap(taps(), processOf(app.pid()), ApplicationTaps::Mute::whileTapped);
    ASSERT_TRUE(Recorder(session(), speakers.name, {1}).isSilentAt(0, 440));

    replaceManager();

    EXPECT_TRUE(isLaterProgramHeard());
    app.play("music", 440, 440, playedDb);
    EXPECT_TRUE(waitUntil([] { return isSentToMuteSink("music"); }));
    EXPECT_TRUE(Recorder(session(), speakers.name, {1}).isSilentAt(0, 440));
}

TEST_F(ManagerReturn, LinksOthersAfterADeviceOfOursHasPlayed) {
    const std::string uid(dawSinkUID);
    const auto made = audio.sinks().create({.name = "Velmora DAW",
                                            .uid = uid,
                                            .masterUID = interface4.name,
                                            .followerUID = microphone});
    ASSERT_TRUE(made.has_value());
    const Feeder workstation(session(), uid, {1, 2}, {.hz = {440, 440}, .db = playedDb});
    ASSERT_TRUE(Recorder(session(), interface4.name, {1}).hears(0, 440, playedDb));

    replaceManager();

    EXPECT_TRUE(isLaterProgramHeard());
    EXPECT_TRUE(Recorder(session(), interface4.name, {1}).hears(0, 440, playedDb));
    EXPECT_EQ(audio.sinks().remove(*made), statusOk);
}

} // namespace
} // namespace velmora
