// The program itself, from its start in a terminal to its end.

#include "ProgramTerminal.h"

#include "platform/sqlite/SqliteDefaultsStore.h"
#include "presets/PresetStore.h"
#include "support/ClientPrograms.h"
#include "support/SessionTest.h"
#include "support/TemporaryFolder.h"
#include "support/Wait.h"

#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>
#include <string>

namespace velmora {
namespace {

using namespace support;
using ::testing::Optional;

constexpr double leftHz = 2300;
constexpr double rightHz = 3100;
constexpr double fedDb = -20;

/// A terminal and settings of its own.
class Program : public SessionTest {
protected:
    /// What the user saved in an earlier launch: the interface's first pair at half its level.
    void keepActivePreset() const {
        SqliteDefaultsStore defaults(settingsFolder.path() / "velmora" / "settings.sqlite");
        PresetStore presets(defaults);
        presets.save({.id = Uuid::random(),
                      .name = "Evening",
                      .sources = {{.kind = PresetSource::Kind::deviceChannels,
                                   .name = "First pair",
                                   .deviceUID = interface4.name,
                                   .first = 1,
                                   .count = 2,
                                   .gain = 0.5F}}});
    }

    [[nodiscard]] Environment environment() const {
        Environment result = session().environment();
        result["XDG_DATA_HOME"] = settingsFolder.path();
        return result;
    }

    [[nodiscard]] ChildProcess launch(const Environment& environment) const {
        return ChildProcess({.arguments = {VELMORA_PROGRAM},
                             .environment = environment,
                             .output = terminal.file(),
                             .input = terminal.file()});
    }

    [[nodiscard]] bool showsSoon(const std::string& text) const {
        return waitUntil([&] { return terminal.shows(text); });
    }

    void expectTerminalTaken() const {
        EXPECT_EQ(terminal.modes().c_lflag & static_cast<tcflag_t>(ICANON | ECHO), 0U);
    }

    void expectTerminalGivenBack() const {
        static const std::string leaveScreen = "\x1b[?25h\x1b[?1049l"; // cursor, usual screen
        EXPECT_TRUE(waitUntil([&] { return terminal.written().ends_with(leaveScreen); }))
            << "something was written after the screen was left, or it was not left";
        const termios now = terminal.modes();
        EXPECT_EQ(now.c_iflag, before.c_iflag);
        EXPECT_EQ(now.c_oflag, before.c_oflag);
        EXPECT_EQ(now.c_cflag, before.c_cflag);
        EXPECT_EQ(now.c_lflag, before.c_lflag);
    }

    TemporaryFolder settingsFolder{"velmora-settings"};
    ProgramTerminal terminal;
    termios before = terminal.modes();
};

/// The program with its preset restored, while the interface's first pair carries a tone.
class ProgramWithPreset : public Program {
protected:
    void SetUp() override {
        ASSERT_TRUE(showsSoon("First pair"));
        expectTerminalTaken();
    }

    void startMix() const {
        terminal.type(" ");
        EXPECT_TRUE(showsSoon("En marche"));
        constexpr double halvedDb = fedDb - 6.02;
        EXPECT_TRUE(mic.hears(0, leftHz, halvedDb));
        EXPECT_TRUE(mic.hears(1, rightHz, halvedDb));
    }

    Feeder feeder{session(), interface4.name, {1, 2}, {.hz = {leftHz, rightHz}, .db = fedDb}};
    Recorder mic{session(), microphone, {1, 2}};
    ChildProcess process = launchWithPreset();

private:
    [[nodiscard]] ChildProcess launchWithPreset() const {
        keepActivePreset();
        return launch(environment());
    }
};

TEST_F(ProgramWithPreset, MixesWhatItRestoredUntilTheUserQuits) {
    startMix();

    terminal.type("q");

    EXPECT_THAT(process.wait(patience), Optional(0));
    expectTerminalGivenBack();
    EXPECT_TRUE(mic.isSilentAt(0, leftHz));
}

TEST_F(ProgramWithPreset, EndsTheSameWayWhenItIsToldToTerminate) {
    startMix();

    process.signal(SIGTERM);

    EXPECT_THAT(process.wait(patience), Optional(0));
    expectTerminalGivenBack();
    EXPECT_TRUE(mic.isSilentAt(0, leftHz));
}

TEST_F(Program, SaysThatThereIsNoSoundServerAndQuits) {
    const TemporaryFolder runtime("velmora-run");
    Environment silent = environment();
    silent["XDG_RUNTIME_DIR"] = runtime.path();
    ChildProcess process = launch(silent);
    EXPECT_TRUE(showsSoon("Service audio injoignable"));
    expectTerminalTaken();

    terminal.type("q");

    EXPECT_THAT(process.wait(patience), Optional(0));
    expectTerminalGivenBack();
}

} // namespace
} // namespace velmora
