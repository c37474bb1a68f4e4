// Which application real players are.

#include "MixerTest.h"

#include <filesystem>
#include <fstream>

namespace velmora {
namespace {

using namespace support;
namespace fs = std::filesystem;

class Identity : public MixerTest {
protected:
    Identity() { writeWav(sound, makeTone({.hz = {leftHz, rightHz}, .db = playedDb}, 60)); }

    /// A copy of an installed program, with a desktop entry of its own.
    static std::string install(const std::string& program, const std::string& name) {
        const fs::path copy = session().folder() / ("own-" + program);
        fs::copy_file(
            fs::canonical(fs::path("/usr/bin") / program), copy, fs::copy_options::skip_existing);
        std::ofstream(entry("own-" + program)) << "[Desktop Entry]\nType=Application\nName=" << name
                                               << "\nExec=" << copy.string() << " %U\n";
        return copy;
    }
    static fs::path entry(const std::string& program) {
        return session().applicationsFolder() / ("org.example." + program + ".desktop");
    }

    const fs::path sound = folder.path() / "sound.wav";
};

TEST_F(Identity, OfAPulseClientIsTheApplicationWhoseProgramItRuns) {
    const ChildProcess player = session().start({"env",
                                                 "SDL_AUDIODRIVER=pulse",
                                                 install("ffplay", "Viewer"),
                                                 "-nodisp",
                                                 "-loglevel",
                                                 "error",
                                                 sound},
                                                "ffplay");

    const AudioSource source = playing(player.pid());

    EXPECT_EQ(source.name(), "Viewer");
    EXPECT_EQ(source.app()->bundleID, "org.example.own-ffplay");
}

TEST_F(Identity, OfAClientOfPipeWiresOwnIsTheApplicationWhoseProgramItRuns) {
    const ChildProcess player = session().start(
        {install("mpv", "Cinema"), "--no-video", "--no-config", "--ao=pipewire", sound}, "mpv");

    const AudioSource source = playing(player.pid());

    EXPECT_EQ(source.name(), "Cinema");
    EXPECT_EQ(source.app()->bundleID, "org.example.own-mpv");
}

TEST_F(Identity, OfAPlayerIsWhatItWasLaunchedAs) {
    std::ofstream(entry("radio")) << "[Desktop Entry]\nType=Application\nName=Radio\nExec=true\n";
    const std::string launch = "GIO_LAUNCHED_DESKTOP_FILE='" + entry("radio").string() +
                               "' GIO_LAUNCHED_DESKTOP_FILE_PID=$$ exec paplay '" + sound.string() +
                               "'";
    const ChildProcess player = session().start({"sh", "-c", launch}, "paplay");

    const AudioSource source = playing(player.pid());

    EXPECT_EQ(source.name(), "Radio");
    EXPECT_EQ(source.app()->bundleID, "org.example.radio");
}

TEST_F(Identity, OfAPlayerThatAnotherApplicationStartedIsItsOwn) {
    std::ofstream(entry("chat")) << "[Desktop Entry]\nType=Application\nName=Chat\nExec=true\n";
    const std::string start = "export GIO_LAUNCHED_DESKTOP_FILE='" + entry("chat").string() +
                              "' GIO_LAUNCHED_DESKTOP_FILE_PID=$$; env SDL_AUDIODRIVER=pulse '" +
                              install("ffplay", "Viewer") + "' -nodisp -loglevel error '" +
                              sound.string() + "'; true";
    const ChildProcess chat = session().start({"sh", "-c", start}, "chat");

    std::optional<AudioSource> found;
    EXPECT_TRUE(waitUntil([&] {
        discovery.refresh();
        for (const AudioSource& source : discovery.runningApps()) {
            found = source.name() == "Viewer" ? std::optional(source) : found;
        }
        return found.has_value();
    }));

    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(found->app()->bundleID, "org.example.own-ffplay");
    EXPECT_NE(found->app()->pid, chat.pid());
}

} // namespace
} // namespace velmora
