// What the lists of applications and devices say about a real session.

#include "MixerTest.h"

#include "capture/DeviceQueries.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>

namespace velmora {
namespace {

using namespace support;
using ::testing::Contains;
using ::testing::Not;

class Discovery : public MixerTest {
protected:
    /// An installed application of the session: a renamed copy of the tone application with a
    /// desktop entry of its own.
    static std::string install(const std::string& program, const std::string& visibleName) {
        namespace fs = std::filesystem;
        const fs::path copy = session().folder() / program;
        fs::copy_file(clientProgram("velmora_tone_app"), copy, fs::copy_options::skip_existing);
        std::ofstream(session().applicationsFolder() / ("org.example." + program + ".desktop"))
            << "[Desktop Entry]\nType=Application\nName=" << visibleName
            << "\nExec=" << copy.string() << " %U\nIcon=" << program << "\n";
        return copy;
    }

    static InputDeviceInfo info(const std::vector<InputDeviceInfo>& infos,
                                const std::string& name) {
        const auto found = std::ranges::find(infos, name, &InputDeviceInfo::name);
        return found == infos.end() ? InputDeviceInfo{} : *found;
    }
};

TEST_F(Discovery, APlayingProgramWithoutADesktopEntryHasAnIdentifierMadeOfItsPid) {
    const PulsePlayer player(session(), {.hz = {leftHz, rightHz}, .db = playedDb});

    const AudioSource source = playing(player.pid());

    EXPECT_EQ(source.app()->bundleID, "pid." + std::to_string(player.pid()));
    EXPECT_EQ(source.name(), "paplay");
}

TEST_F(Discovery, AnInstalledApplicationHasItsEntrysNameAndIdentifier) {
    const ToneApp app(session(), {.program = install("velmora-jukebox", "Jukebox")});
    app.play("music", leftHz, rightHz, playedDb);

    const AudioSource source = playing(app.pid());

    EXPECT_EQ(source.name(), "Jukebox");
    EXPECT_EQ(source.app()->bundleID, "org.example.velmora-jukebox");
}

TEST_F(Discovery, AProgramThatPlaysFromAChildProcessIsOneApplicationUnderItsOwnName) {
    const ToneApp browser(
        session(),
        {.program = install("velmora-browser", "Browser"), .playsFromChildProcess = true});
    browser.play("tab-1", leftHz, rightHz, playedDb);
    browser.play("tab-2", otherLeftHz, otherRightHz, playedDb);

    const AudioSource source = playing(browser.pid());

    EXPECT_EQ(source.name(), "Browser");
    EXPECT_EQ(source.app()->bundleID, "org.example.velmora-browser");
    const auto sameName =
        std::ranges::count(discovery.runningApps(), "Browser", &AudioSource::name);
    EXPECT_EQ(sameName, 1);

    const Recorder mic(session(), microphone, {1, 2});
    mix({source});
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    EXPECT_TRUE(mic.hears(0, otherLeftHz, playedDb));
}

TEST_F(Discovery, AnApplicationThatHasStoppedIsListedAsSilentOnlyWhenItIsInstalled) {
    const ToneApp installed(session(), {.program = install("velmora-jukebox", "Jukebox")});
    const ToneApp background(session());
    installed.play("music", leftHz, rightHz, playedDb);
    background.play("music", leftHz, rightHz, playedDb);
    static_cast<void>(playing(installed.pid()));
    static_cast<void>(playing(background.pid()));

    installed.stop("music");
    background.stop("music");

    EXPECT_TRUE(waitUntil([&] {
        discovery.refresh();
        return !discovery.playingPIDs().contains(installed.pid()) && !listed(background.pid());
    }));
    EXPECT_TRUE(listed(installed.pid()).has_value());
}

TEST_F(Discovery, AnApplicationIsGoneFromTheListWhenItEnds) {
    ToneApp app(session());
    app.play("music", leftHz, rightHz, playedDb);
    static_cast<void>(playing(app.pid()));
    const pid_t pid = app.pid();

    app.end();

    EXPECT_TRUE(waitUntil([&] {
        discovery.refresh();
        return !listed(pid);
    }));
}

TEST_F(Discovery, APlayingApplicationComesBeforeASilentOne) {
    const ToneApp silent(session(), {.program = install("velmora-aaa", "Aaa")});
    const ToneApp loud(session(), {.program = install("velmora-zzz", "Zzz")});
    silent.play("music", leftHz, rightHz, playedDb);
    loud.play("music", leftHz, rightHz, playedDb);
    static_cast<void>(playing(silent.pid()));
    static_cast<void>(playing(loud.pid()));

    silent.stop("music");

    EXPECT_TRUE(waitUntil([&] {
        discovery.refresh();
        return !discovery.playingPIDs().contains(silent.pid());
    }));
    ASSERT_GE(discovery.runningApps().size(), 2U);
    EXPECT_EQ(discovery.runningApps()[0].name(), "Zzz");
    EXPECT_EQ(discovery.runningApps()[1].name(), "Aaa");
}

TEST_F(Discovery, TheMixersOwnNodesAreNoApplicationsAndNoDevices) {
    const ToneApp app(session());
    app.play("music", leftHz, rightHz, playedDb);
    const AudioSource source = playing(app.pid());
    engine.setDirectMuted(true, source);
    discovery.refresh();
    const auto inputs = discovery.inputDevices();
    const auto outputs = discovery.outputDevices();

    mix({source});

    EXPECT_TRUE(waitUntil([&] {
        discovery.refresh();
        return discovery.playingPIDs().contains(app.pid());
    }));
    EXPECT_FALSE(listed(getpid()).has_value());
    EXPECT_EQ(discovery.inputDevices(), inputs);
    EXPECT_EQ(discovery.outputDevices(), outputs);
}

TEST_F(Discovery, DevicesHaveTheirNamesAndChannelsInEachDirection) {
    discovery.refresh();

    const InputDeviceInfo input = info(discovery.inputDeviceInfos(), interface4.description);
    const InputDeviceInfo output = info(discovery.outputDeviceInfos(), interface4.description);
    EXPECT_EQ(input.channels, 4);
    EXPECT_EQ(output.channels, 4);
    EXPECT_EQ(input.deviceID, output.deviceID);
    EXPECT_EQ(info(discovery.outputDeviceInfos(), speakers.description).channels, 2);
    // A software device of the sound server's own is virtual; an output never says so.
    EXPECT_TRUE(input.isVirtual);
    EXPECT_FALSE(output.isVirtual);
}

TEST_F(Discovery, ASpeakersMonitorIsNoInput) {
    discovery.refresh();

    EXPECT_THAT(discovery.inputDevices(),
                Not(Contains(::testing::Property(&AudioSource::name, speakers.description))));
}

TEST_F(Discovery, TheVirtualMicrophoneIsFoundButNeverOffered) {
    discovery.refresh();

    const auto found = findVirtualMicDevice(platform.devices);
    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(deviceUID(platform.devices, *found), microphone);
    EXPECT_EQ(deviceName(platform.devices, *found), "Velmora Microphone");
    for (const auto* list : {&discovery.inputDevices(), &discovery.outputDevices()}) {
        EXPECT_THAT(*list,
                    Not(Contains(::testing::Property(&AudioSource::name, "Velmora Microphone"))));
    }
}

TEST_F(Discovery, ADeviceKeepsItsIdWhenItReturns) {
    const SessionDevice headset{.name = "test.headset",
                                .description = "Headset",
                                .mediaClass = "Audio/Sink",
                                .priority = 1};
    session().add(headset);
    std::optional<AudioObjectID> before;
    EXPECT_TRUE(waitUntil(
        [&] { return (before = findDevice(platform.devices, headset.name)).has_value(); }));

    session().remove(headset.name);
    EXPECT_TRUE(waitUntil([&] { return !findDevice(platform.devices, headset.name); }));
    session().add(headset);

    EXPECT_TRUE(waitUntil([&] { return findDevice(platform.devices, headset.name) == before; }));
    session().remove(headset.name);
}

} // namespace
} // namespace velmora
