// The session and its client programs are what the other session tests measure with, so they are
// checked first, without the mixer.

#include "support/ClientPrograms.h"
#include "support/PrivateSession.h"
#include "support/Recording.h"
#include "support/SessionDevices.h"
#include "support/SessionTest.h"
#include "support/ToneAnalysis.h"

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>

namespace velmora::support {
namespace {

class SessionClients : public SessionTest {};

TEST_F(SessionClients, ANativeApplicationIsHeardOnTheSpeakers) {
    const Recorder recorder(session(), speakers.name, {1, 2});

    ToneApp app(session());
    app.play("music", 440, 554, -20);

    EXPECT_TRUE(recorder.hears(0, 440, -20));
    EXPECT_TRUE(recorder.hears(1, 554, -20));
    app.stop("music");
    EXPECT_TRUE(recorder.isSilentAt(0, 440));
}

TEST_F(SessionClients, APulseApplicationIsHeardOnTheSpeakers) {
    const Recorder recorder(session(), speakers.name, {1, 2});

    const PulsePlayer app(session(), {.hz = {1000, 1250}, .db = -30});

    EXPECT_TRUE(recorder.hears(0, 1000, -30));
    EXPECT_TRUE(recorder.hears(1, 1250, -30));
}

TEST_F(SessionClients, AFedChannelOfTheInterfaceIsCapturedOnThatChannelOnly) {
    const Recorder recorder(session(), interface4.name, {1, 2, 3, 4});

    const Feeder feeder(session(), interface4.name, {3}, {.hz = {700}, .db = -12});

    EXPECT_TRUE(recorder.hears(2, 700, -12));
    for (const std::uint32_t other : {0U, 1U, 3U}) {
        EXPECT_TRUE(recorder.isSilentAt(other, 700)) << "channel " << other;
    }
}

TEST_F(SessionClients, ACallProgramHearsWhatIsPlayedIntoTheVirtualMicrophone) {
    const PulseRecorder recorder(session(), microphone);

    const Feeder feeder(session(), microphone, {1, 2}, {.hz = {500, 800}, .db = -20});

    EXPECT_TRUE(recorder.hears(0, 500, -20));
    EXPECT_TRUE(recorder.hears(1, 800, -20));
}

TEST_F(SessionClients, DevicesComeAndGoAndTheDefaultOutputMoves) {
    const SessionDevice headset{
        .name = "headset", .description = "Headset", .mediaClass = "Audio/Sink", .priority = 1};

    session().add(headset);
    session().setDefaultSink("headset");
    EXPECT_EQ(session().graph().defaultSink(), "headset");

    session().remove("headset");
    EXPECT_TRUE(waitUntil([] { return session().graph().defaultSink() == speakers.name; }));
}

TEST_F(SessionClients, TheServicesComeBackAfterTheDaemonWasKilled) {
    session().killDaemon();
    EXPECT_TRUE(session().graph().nodes().empty());

    session().startServices();

    EXPECT_NE(session().graph().node(microphone), nullptr);
    EXPECT_EQ(session().graph().defaultSink(), speakers.name);
}

TEST(PrivateSessionEnd, LeavesNoFolderAndNoProcess) {
    std::filesystem::path folder;
    pid_t group = 0;
    {
        const PrivateSession short_({.devices = {speakers}});
        folder = short_.folder();
        group = short_.processGroup();
        EXPECT_EQ(kill(-group, 0), 0);
    }
    EXPECT_FALSE(std::filesystem::exists(folder));
    EXPECT_NE(kill(-group, 0), 0);
}

} // namespace
} // namespace velmora::support
