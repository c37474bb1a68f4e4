// The real window operates the real mix, and a recording of the virtual microphone follows.

#include "ShownWindow.h"
#include "support/ClientPrograms.h"
#include "support/Prediction.h"
#include "support/SessionTest.h"
#include "support/TemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <string>

namespace velmora {
namespace {

using namespace support;

constexpr double musicHz[] = {440, 554};
constexpr double callHz[] = {1000, 1270};
constexpr double playedDb = -20;

class WindowOnAMix : public SessionTest {
protected:
    WindowOnAMix() {
        music.play("music", musicHz[0], musicHz[1], playedDb);
        call.play("call", callHz[0], callHz[1], playedDb);
        EXPECT_TRUE(atSpeakers.hears(0, musicHz[0], playedDb));
        EXPECT_TRUE(atSpeakers.hears(0, callHz[0], playedDb));
    }

    static void SetUpTestSuite() {
        SessionTest::SetUpTestSuite();
        install("Jukebox");
        install("Conference");
    }
    /// A player under a program name of its own, so that the desktop, and so a preset, knows it.
    static void install(const std::string& name) {
        std::filesystem::copy_file(clientProgram("velmora_tone_app"), programOf(name));
        std::ofstream(session().applicationsFolder() / (name + ".desktop"))
            << "[Desktop Entry]\nType=Application\nName=" << name << "\nExec=" << programOf(name)
            << '\n';
    }
    static std::string programOf(const std::string& name) {
        return session().folder() / ("player-of-" + name);
    }

    TemporaryFolder folder{"velmora-window"};
    Recorder mic{session(), microphone, {1, 2}};
    Recorder atSpeakers{session(), speakers.name, {1, 2}};
    ToneApp music{session(), {.program = programOf("Jukebox")}};
    ToneApp call{session(), {.program = programOf("Conference")}};
    ShownWindow window{folder.path() / "settings.db"};
};

TEST_F(WindowOnAMix, WhatIsDoneInTheWindowIsHeardInTheMicrophone) {
    // Two applications that play, from the two menus.
    window.click("sourcePicker");
    window.choose("Jukebox");
    window.click("addSource");
    window.choose("Conference");
    window.dragFader(window.strip(0), -10);
    window.dragFader(window.strip(1), -4);
    const double musicDb = playedDb + toDb(window.engine().gain(window.engine().sources()[0]));
    const double callDb = playedDb + toDb(window.engine().gain(window.engine().sources()[1]));
    EXPECT_NEAR(musicDb, playedDb - 10, 0.3);
    EXPECT_NEAR(callDb, playedDb - 4, 0.3);

    window.click("runningSwitch");
    EXPECT_TRUE(mic.hears(0, musicHz[0], musicDb));
    EXPECT_TRUE(mic.hears(1, callHz[1], callDb));

    // Muted, and back at the gain that it had.
    window.click("muteButton", &window.strip(0));
    EXPECT_TRUE(mic.isSilentAt(0, musicHz[0]));
    EXPECT_TRUE(mic.hears(0, callHz[0], callDb));
    window.click("muteButton", &window.strip(0));
    EXPECT_TRUE(mic.hears(0, musicHz[0], musicDb));

    // The strongest compressor, without the automatic level, as the chain makes it.
    window.click("effectsButton", &window.strip(1));
    window.click("gainTitle", &window.strip(1));
    window.click("Gain automatique", &window.find("gainRow", &window.strip(1)));
    window.click("compTitle", &window.strip(1));
    window.click("Forte", &window.find("compRow", &window.strip(1)));
    const FXParams squeezed{.comp = 3, .autoGain = false};
    EXPECT_EQ(window.engine().fx(window.engine().sources()[1]), squeezed);
    const double squeezedDb =
        predictedDb({.hz = {callHz[0], callHz[1]}, .db = playedDb}, callDb - playedDb, squeezed, 4)
            .front();
    EXPECT_TRUE(mic.hears(0, callHz[0], squeezedDb));

    window.click("presetPicker");
    window.choose("Enregistrer le setup actuel…");
    window.type("soir");
    window.click("confirmSave");
    EXPECT_EQ(window.model().activePresetName(), "soir");

    // Everything else than it was.
    window.dragFader(window.strip(0), -30);
    window.click("resetEffects", &window.strip(1));
    window.click("removeButton", &window.strip(1));
    EXPECT_TRUE(mic.isSilentAt(0, callHz[0]));
    EXPECT_TRUE(mic.hears(0, musicHz[0], playedDb - 30, 1));

    window.click("presetPicker");
    window.choose("soir");
    EXPECT_TRUE(mic.hears(0, musicHz[0], musicDb));
    EXPECT_TRUE(mic.hears(0, callHz[0], squeezedDb));

    window.click("runningSwitch");
    EXPECT_TRUE(mic.isSilentAt(0, musicHz[0]));
    EXPECT_TRUE(mic.isSilentAt(0, callHz[0]));
}

} // namespace
} // namespace velmora
