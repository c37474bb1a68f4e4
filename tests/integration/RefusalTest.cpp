// What the user is told when something that a mix needs is not there.

#include "MixerTest.h"

namespace velmora {
namespace {

using namespace support;

const std::string noMicrophone =
    "Micro virtuel introuvable — réinstalle Velmora (le driver a peut-être été supprimé).";

class Refusal : public MixerTest {};

TEST_F(Refusal, AChannelBeyondTheDeviceIsNamedWithTheDevicesCount) {
    engine.add(input(interface4.description, 5, 2));

    engine.start();

    EXPECT_FALSE(engine.isRunning());
    EXPECT_EQ(engine.lastError(), interface4.description + " : Canal 5 indisponible (4 canaux)");
}

TEST_F(Refusal, AnApplicationWithoutSoundIsTold) {
    const ToneApp silent(session());
    engine.add(AppSource{.pid = silent.pid(), .name = "Silent", .bundleID = "silent"});

    engine.start();

    EXPECT_FALSE(engine.isRunning());
    EXPECT_EQ(engine.lastError(),
              "Silent : Cette app n'a pas encore de son — lance une lecture dedans, puis "
              "re-sélectionne-la.");

    silent.play("music", leftHz, rightHz, playedDb);
    static_cast<void>(playing(silent.pid()));
    engine.start();
    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(engine.lastError(), std::nullopt);
}

TEST_F(Refusal, OneMissingSourceIsToldWhileTheOthersPlay) {
    const Recorder mic(session(), microphone, {1, 2});
    const ToneApp app(session());
    app.play("music", leftHz, rightHz, playedDb);
    engine.add(DeviceSource{.id = 1, .name = "Unplugged"});
    engine.add(playing(app.pid()));

    engine.start();

    EXPECT_TRUE(engine.isRunning());
    EXPECT_TRUE(engine.lastError().value_or("").starts_with("Unplugged : ")) << *engine.lastError();
    EXPECT_EQ(engine.lastError().value_or("").find('\n'), std::string::npos);
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
}

TEST_F(Refusal, WithoutASoundServerAStartSaysSoAndWaitsForIt) {
    const AudioSource source = input(interface4.description, 1, 2);
    session().killDaemon();
    EXPECT_TRUE(waitUntil([this] { return !platform.devices.isAvailable(); }));
    engine.add(source);

    engine.start();

    EXPECT_EQ(engine.lastError(), serviceAway);
    discovery.refresh();
    EXPECT_TRUE(discovery.inputDevices().empty());
    EXPECT_TRUE(discovery.runningApps().empty());

    session().startServices();
    EXPECT_TRUE(waitUntil([this] { return engine.isRunning() && !engine.lastError(); }))
        << engine.lastError().value_or("");
}

/// A session like any other but for the virtual microphone.
class RefusalWithoutMicrophone : public MixerTest {
protected:
    static void SetUpTestSuite() { begin({.devices = {speakers}, .virtualMicrophone = false}); }
};

TEST_F(RefusalWithoutMicrophone, IsTold) {
    const ToneApp app(session());
    app.play("music", leftHz, rightHz, playedDb);
    engine.add(playing(app.pid()));

    engine.start();

    EXPECT_FALSE(engine.isRunning());
    EXPECT_EQ(engine.lastError(), noMicrophone);
}

TEST_F(RefusalWithoutMicrophone, EndsWhenTheMixerMakesOne) {
    const ToneApp app(session());
    app.play("music", leftHz, rightHz, playedDb);
    engine.add(playing(app.pid()));

    EXPECT_EQ(machine.audio().ensureVirtualMicrophone(), statusOk);
    engine.start();

    EXPECT_EQ(engine.lastError(), std::nullopt);
    const Recorder mic(session(), microphone, {1, 2});
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
}

} // namespace
} // namespace velmora
