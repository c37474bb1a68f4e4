// The program itself on a desktop: its tray item, its windows, its beginning and its end.

#include "app/DesktopRig.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <vector>

namespace velmora {
namespace {

using namespace support;
using testing::ElementsAre;
using testing::Optional;

constexpr double hz = 2300;
constexpr double fedDb = -20;

class TrayProgram : public DesktopRig {
protected:
    [[nodiscard]] bool hasItemSoon() {
        return waitUntil([&] { return panel && panel->hasItem(); });
    }
    [[nodiscard]] std::vector<std::string> labels() const {
        std::vector<std::string> result;
        for (const PanelMenuEntry& entry : panel->menu()) {
            result.push_back(entry.label);
        }
        return result;
    }

    std::optional<FakePanel> panel{std::in_place, busAddress()};
};

TEST_F(TrayProgram, IsAnItemWithoutAWindowAtStart) {
    ChildProcess program = launch();

    ASSERT_TRUE(hasItemSoon());
    std::vector<int> sizes;
    for (const auto& picture : panel->pictures()) {
        sizes.push_back(picture.width);
        EXPECT_EQ(picture.width, picture.height);
        EXPECT_GT(picture.pixels.count('\xff'), 0); // something is drawn
    }
    EXPECT_THAT(sizes, ElementsAre(22, 44));
    EXPECT_FALSE(waitUntil([&] { return !window("Velmora").empty(); }, std::chrono::seconds(3)));
}

TEST_F(TrayProgram, HasThreeCommandsWithTheirShortcuts) {
    ChildProcess program = launch();
    ASSERT_TRUE(hasItemSoon());

    const auto menu = panel->menu();
    EXPECT_THAT(labels(), ElementsAre("Ouvrir Velmora", "-", "Réglages…", "-", "Quitter Velmora"));
    std::vector<std::string> shortcuts;
    for (const PanelMenuEntry& entry : menu) {
        shortcuts.push_back(entry.shortcut);
    }
    EXPECT_THAT(shortcuts, ElementsAre("", "", "Control+,", "", "Control+Q"));
}

TEST_F(TrayProgram, SpeaksTheLanguageThatIsKeptAndFollowsAnotherAtOnce) {
    settings().set("language", std::string("en"));
    ChildProcess program = launch();
    ASSERT_TRUE(hasItemSoon());
    ASSERT_THAT(labels(), ElementsAre("Open Velmora", "-", "Settings…", "-", "Quit Velmora"));

    panel->choose("Settings…");
    ASSERT_TRUE(showsSoon("Velmora Settings"));
    // All three tabs, the appearance, the language: its menu's other entry.
    press("Velmora Settings", {"Tab", "Tab", "Tab", "Tab", "Tab", "space", "Up", "Return"});

    EXPECT_TRUE(showsSoon("Réglages Velmora"));
    EXPECT_TRUE(waitUntil([&] { return labels().front() == "Ouvrir Velmora"; }));
}

TEST_F(TrayProgram, SaysWhetherTheMixIsOnAndTheMicrophoneMuted) {
    settings().set("streamVolume", 0.0);
    ChildProcess program = launch();
    ASSERT_TRUE(hasItemSoon());

    EXPECT_EQ(panel->toolTip(), "Velmora — mix arrêté, micro coupé");
}

TEST_F(TrayProgram, EachCommandDoesWhatItSays) {
    ChildProcess program = launch();
    ASSERT_TRUE(hasItemSoon());

    panel->choose("Ouvrir Velmora");
    EXPECT_TRUE(showsSoon("Velmora"));
    panel->choose("Réglages…");
    EXPECT_TRUE(showsSoon("Réglages Velmora"));
    panel->choose("Quitter Velmora");

    EXPECT_THAT(program.wait(patience), Optional(0));
}

TEST_F(TrayProgram, AClickOnTheIconOpensTheWindowAndClosingItLeavesTheItem) {
    ChildProcess program = launch();
    ASSERT_TRUE(hasItemSoon());
    panel->click();
    ASSERT_TRUE(showsSoon("Velmora"));

    close("Velmora");
    EXPECT_TRUE(hidesSoon("Velmora"));
    EXPECT_TRUE(program.isRunning());

    panel->click();
    EXPECT_TRUE(showsSoon("Velmora"));
}

TEST_F(TrayProgram, BringsACoveredWindowToTheFrontByItsMenuAndByItsIcon) {
    keepLook("light", "fr");
    const ChildProcess program = launch();
    ASSERT_TRUE(hasItemSoon());
    panel->click();
    ASSERT_TRUE(drawsItsWindowSoon());
    const ChildProcess other({.arguments = {"xev", "-geometry", "1200x900+20+60"},
                              .environment = environment(),
                              .output = home.path() / "other"});
    ASSERT_TRUE(showsSoon("Event Tester"));

    const auto isInFrontSoon = [&](const std::string& title) {
        return waitUntil([&] {
            return xdotool({"getactivewindow", "getwindowname"}) == title + "\n" &&
                   !content().isEmpty();
        });
    };
    const auto workInTheOther = [&] {
        press("Event Tester", {"space"});
        ASSERT_TRUE(waitUntil([&] { return content().isEmpty(); }));
    };
    workInTheOther();
    panel->choose("Ouvrir Velmora");
    EXPECT_TRUE(isInFrontSoon("Velmora"));

    workInTheOther();
    panel->click();
    EXPECT_TRUE(isInFrontSoon("Velmora"));

    panel->choose("Réglages…");
    ASSERT_TRUE(isInFrontSoon("Réglages Velmora"));
    workInTheOther();
    panel->choose("Réglages…");
    EXPECT_TRUE(isInFrontSoon("Réglages Velmora"));
}

TEST_F(TrayProgram, KnowsItsShortcutsInBothWindows) {
    ChildProcess program = launch();
    ASSERT_TRUE(hasItemSoon());
    panel->click();
    ASSERT_TRUE(showsSoon("Velmora"));

    press("Velmora", {"ctrl+comma"});
    ASSERT_TRUE(showsSoon("Réglages Velmora"));
    press("Réglages Velmora", {"ctrl+q"});

    EXPECT_THAT(program.wait(patience), Optional(0));
}

TEST_F(TrayProgram, ShowsTheLevelOfWhatItRestoredAtMostTenTimesASecond) {
    keepActivePreset();
    const Feeder feeder(session(), interface4.name, {1, 2}, {.hz = {hz, hz}, .db = fedDb});
    const Recorder mic(session(), microphone, {1});
    ChildProcess program = launch();
    ASSERT_TRUE(hasItemSoon());
    const auto atRest = panel->pictures();
    panel->watchIcon();
    panel->click();
    ASSERT_TRUE(showsSoon("Velmora"));

    const auto begun = std::chrono::steady_clock::now();
    toggleMix();
    EXPECT_TRUE(mic.hears(0, hz, fedDb));
    EXPECT_TRUE(
        waitUntil([&] { return panel->pictures().front().pixels != atRest.front().pixels; }));
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begun;
    EXPECT_LE(panel->watcher().newIcons, 10 * seconds.count() + 1);
    EXPECT_EQ(panel->toolTip(), "Velmora — mix en marche");

    toggleMix();
    EXPECT_TRUE(mic.isSilentAt(0, hz));
    EXPECT_TRUE(
        waitUntil([&] { return panel->pictures().front().pixels == atRest.front().pixels; }));
}

TEST_F(TrayProgram, NamesItsIconWhereAThemeHasIt) {
    const auto theme = home.path() / "share" / "icons" / "hicolor";
    std::filesystem::create_directories(theme / "scalable");
    std::filesystem::copy(VELMORA_STATUS_ICONS, theme / "scalable" / "status");
    std::ofstream(theme / "index.theme")
        << "[Icon Theme]\nName=Hicolor\nDirectories=scalable/status\n"
           "[scalable/status]\nSize=16\nMinSize=8\nMaxSize=512\nType=Scalable\n";
    auto themed = environment();
    themed["XDG_DATA_DIRS"] = home.path() / "share";
    ChildProcess program = launch(themed);

    ASSERT_TRUE(hasItemSoon());

    EXPECT_EQ(panel->iconName(), "app.velmora.Velmora-idle-symbolic");
}

TEST_F(TrayProgram, UsesPicturesWhereNoThemeHasIt) {
    ChildProcess program = launch();

    ASSERT_TRUE(hasItemSoon());

    EXPECT_EQ(panel->iconName(), "");
}

TEST_F(TrayProgram, WaitsForAPanelThatOnlyRegistersItsHostLater) {
    panel.emplace(busAddress(), /*hasHost=*/false);
    ChildProcess program = launch();
    ASSERT_TRUE(showsSoon("Velmora")); // nobody shows items yet
    EXPECT_FALSE(panel->hasItem());

    panel->watcher().setHost(true);

    EXPECT_TRUE(hasItemSoon());
}

TEST_F(TrayProgram, GivesItsItemToAPanelThatAppearsLater) {
    panel.reset();
    ChildProcess program = launch();
    ASSERT_TRUE(showsSoon("Velmora"));

    panel.emplace(busAddress());
    ASSERT_TRUE(hasItemSoon());

    close("Velmora");
    EXPECT_TRUE(hidesSoon("Velmora"));
    EXPECT_TRUE(program.isRunning());
    panel->choose("Quitter Velmora");
    EXPECT_THAT(program.wait(patience), Optional(0));
}

TEST_F(TrayProgram, StartedWithTheSessionOpensNoWindowHoweverLateThePanelIs) {
    panel.reset();
    ChildProcess program = launchHidden();
    EXPECT_FALSE(waitUntil([&] { return !window("Velmora").empty(); }, std::chrono::seconds(3)));

    panel.emplace(busAddress());
    ASSERT_TRUE(hasItemSoon());
    EXPECT_TRUE(window("Velmora").empty());

    panel->click();
    EXPECT_TRUE(showsSoon("Velmora"));
}

TEST_F(TrayProgram, ReturnsToAPanelThatWasRestarted) {
    ChildProcess program = launch();
    ASSERT_TRUE(hasItemSoon());

    panel.reset();
    panel.emplace(busAddress());

    EXPECT_TRUE(hasItemSoon());
}

/// A desktop whose panel knows nothing of D-Bus.
class EmbeddedProgram : public DesktopRig {
protected:
    [[nodiscard]] int docked() const {
        std::ifstream lines(home.path() / "panel");
        int count = 0;
        for (std::string line; std::getline(lines, line);) {
            count += line == "docked" ? 1 : 0;
        }
        return count;
    }
    [[nodiscard]] ChildProcess startPanel() const {
        return ChildProcess({.arguments = {VELMORA_EMBEDDING_PANEL},
                             .environment = environment(),
                             .output = home.path() / "panel"});
    }
};

TEST_F(EmbeddedProgram, IsAnIconWhoseClickOpensTheWindow) {
    ChildProcess panel = startPanel();
    ChildProcess program = launch();
    ASSERT_TRUE(waitUntil([&] { return docked() == 1; }));
    EXPECT_FALSE(waitUntil([&] { return !window("Velmora").empty(); }, std::chrono::seconds(1)));

    xdotool({"mousemove", "12", "12", "click", "1"});
    ASSERT_TRUE(showsSoon("Velmora"));

    close("Velmora");
    EXPECT_TRUE(hidesSoon("Velmora"));
    EXPECT_TRUE(program.isRunning());
}

TEST_F(EmbeddedProgram, IsGivenToAPanelThatAppearsLater) {
    ChildProcess program = launch();
    ASSERT_TRUE(showsSoon("Velmora"));

    ChildProcess panel = startPanel();

    EXPECT_TRUE(waitUntil([&] { return docked() == 1; }));
    close("Velmora");
    EXPECT_TRUE(hidesSoon("Velmora"));
    EXPECT_TRUE(program.isRunning());
}

/// A desktop without a tray.
class BareProgram : public DesktopRig {
protected:
    static constexpr int screenHeight = 1024;
    static constexpr int effectRow = 29; // points, at least, of the seven in the effects panel

    /// Where a window's content is, without what the window manager puts around it.
    struct Frame {
        int y = 0;
        int height = 0;
    };
    [[nodiscard]] Frame frame(const std::string& title) const {
        std::istringstream lines(runToEnd({"xwininfo", "-id", window(title)}, environment()));
        Frame result;
        for (std::string word; lines >> word;) {
            if (word == "Y:") {
                lines >> result.y;
                break; // the relative position follows
            }
        }
        for (std::string word; lines >> word;) {
            if (word == "Height:") {
                lines >> result.height;
            }
        }
        return result;
    }
    /// The button of the first source.
    void toggleEffects() const {
        waitUntilStill("Velmora");
        xdotool({"mousemove", "--window", window("Velmora"), "335", "173", "click", "1"});
    }
};

TEST_F(BareProgram, OpensItsWindowAndClosingItEndsAMixerAtRest) {
    ChildProcess program = launch();
    ASSERT_TRUE(showsSoon("Velmora"));

    close("Velmora");

    EXPECT_THAT(program.wait(patience), Optional(0));
}

TEST_F(BareProgram, ClosingTheWindowOfARunningMixerMinimisesIt) {
    keepActivePreset();
    const Feeder feeder(session(), interface4.name, {1, 2}, {.hz = {hz, hz}, .db = fedDb});
    const Recorder mic(session(), microphone, {1});
    ChildProcess program = launch();
    ASSERT_TRUE(showsSoon("Velmora"));
    toggleMix();
    ASSERT_TRUE(mic.hears(0, hz, fedDb));

    close("Velmora");
    EXPECT_TRUE(hidesSoon("Velmora"));
    EXPECT_TRUE(mic.waitForFreshSound());
    EXPECT_TRUE(mic.hears(0, hz, fedDb));

    // Launched again, it comes back instead of starting anew.
    EXPECT_THAT(launch().wait(patience), Optional(0));
    EXPECT_TRUE(showsSoon("Velmora"));
}

TEST_F(BareProgram, ItsWindowGrowsWithItsContentAndStaysOnTheScreen) {
    keepActivePreset();
    ChildProcess program = launch();
    ASSERT_TRUE(showsSoon("Velmora"));
    waitUntilStill("Velmora");
    const Frame before = frame("Velmora");
    const int below = screenHeight - before.height; // its lower edge is the screen's
    xdotool({"windowmove", window("Velmora"), "440", std::to_string(below)});
    ASSERT_TRUE(waitUntil([&] { return frame("Velmora").y > before.y; }));

    toggleEffects();
    EXPECT_TRUE(
        waitUntil([&] { return frame("Velmora").height >= before.height + 7 * effectRow; }));
    EXPECT_TRUE(waitUntil([&] {
        const Frame grown = frame("Velmora");
        return grown.y > 0 && grown.y + grown.height <= screenHeight;
    }));

    toggleEffects();
    EXPECT_TRUE(waitUntil([&] { return frame("Velmora").height == before.height; }));
}

TEST_F(BareProgram, StartedWithTheSessionShowsItsWindowWhenItIsLaunchedAgain) {
    ChildProcess program = launchHidden();
    EXPECT_FALSE(waitUntil([&] { return !window("Velmora").empty(); }, std::chrono::seconds(3)));

    EXPECT_THAT(launch().wait(patience), Optional(0));

    EXPECT_TRUE(showsSoon("Velmora"));
    EXPECT_TRUE(program.isRunning());
}

TEST_F(BareProgram, ASecondLaunchRaisesTheFirstAndEnds) {
    ChildProcess first = launch();
    ASSERT_TRUE(showsSoon("Velmora"));

    ChildProcess second = launch();

    EXPECT_THAT(second.wait(patience), Optional(0));
    EXPECT_TRUE(first.isRunning());
}

TEST_F(BareProgram, OfSeveralLaunchesAtOnceOneStays) {
    constexpr long launches = 4;
    std::vector<ChildProcess> programs;
    for (long i = 0; i < launches; ++i) {
        programs.push_back(launch());
    }

    const auto running = [&] { return std::ranges::count_if(programs, &ChildProcess::isRunning); };
    EXPECT_TRUE(waitUntil([&] { return running() == 1; }));
    ASSERT_TRUE(showsSoon("Velmora"));
    EXPECT_EQ(running(), 1);
    for (ChildProcess& program : programs) {
        if (!program.isRunning()) {
            EXPECT_THAT(program.wait(patience), Optional(0));
        }
    }
}

TEST_F(BareProgram, WithoutABusTheSecondLaunchSaysWhyItEnds) {
    auto busless = environment();
    busless["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=/nowhere/bus";
    ChildProcess first = launch(busless);
    ASSERT_TRUE(showsSoon("Velmora"));
    const std::string firstWindow = window("Velmora");

    ChildProcess second = launch(busless);
    std::string message;
    ASSERT_TRUE(waitUntil([&] {
        std::istringstream all(xdotool({"search", "--onlyvisible", "--name", "^Velmora$"}));
        while (all >> message) {
            if (message != firstWindow) {
                return true;
            }
        }
        return false;
    }));
    EXPECT_TRUE(second.isRunning());
    xdotool({"windowactivate", "--sync", message, "key", "Return"});

    EXPECT_THAT(second.wait(patience), Optional(1));
    EXPECT_TRUE(first.isRunning());
}

TEST_F(BareProgram, WithoutABusEachFurtherLaunchSaysSoWhileTheMessageStands) {
    auto busless = environment();
    busless["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=/nowhere/bus";
    const auto windows = [&] {
        std::istringstream all(xdotool({"search", "--onlyvisible", "--name", "^Velmora$"}));
        return std::distance(std::istream_iterator<std::string>(all), {});
    };
    ChildProcess first = launch(busless);
    ASSERT_TRUE(waitUntil([&] { return windows() == 1; }));

    const ChildProcess second = launch(busless);
    EXPECT_TRUE(waitUntil([&] { return windows() == 2; }));
    const ChildProcess third = launch(busless);
    EXPECT_TRUE(waitUntil([&] { return windows() == 3; }));

    // A message is no mixer: once the first has gone, the next launch is one.
    first.signal(SIGTERM);
    EXPECT_THAT(first.wait(patience), Optional(0));
    ChildProcess next = launch(busless);
    EXPECT_TRUE(waitUntil([&] { return windows() == 3; }));
    EXPECT_EQ(settings().problems().front().kind, StoreProblem::Kind::inUse);
    next.signal(SIGTERM);
    EXPECT_THAT(next.wait(patience), Optional(0));
}

TEST_F(BareProgram, StartsWhateverLocksLieInItsDataFolder) {
    const auto data = home.path() / "data" / "velmora";
    std::filesystem::create_directories(data);
    std::ofstream(data / "velmora.lock");
    std::ofstream(data / "settings.lock") << "4711\nvelmora\nanother-machine\n";
    ChildProcess program = launch();

    EXPECT_TRUE(showsSoon("Velmora"));
    EXPECT_EQ(settings().problems().front().kind, StoreProblem::Kind::inUse);
}

TEST_F(BareProgram, KeepsItsDataFolderToItsOwner) {
    using std::filesystem::perms;
    const auto data = home.path() / "data" / "velmora";
    const auto rights = [&] { return std::filesystem::status(data).permissions(); };
    {
        const ChildProcess program = launch();
        ASSERT_TRUE(waitUntil([&] { return std::filesystem::exists(data); }));
        EXPECT_EQ(rights(), perms::owner_all) << "from the first moment";
        ASSERT_TRUE(showsSoon("Velmora"));
    }
    std::filesystem::permissions(data, perms::owner_all | perms::group_read | perms::others_read);

    const ChildProcess program = launch();
    ASSERT_TRUE(showsSoon("Velmora"));
    EXPECT_EQ(rights(), perms::owner_all);
}

TEST_F(BareProgram, StartsWhereAnotherSessionHoldsTheSettings) {
    const auto other = settings();
    ChildProcess program = launch();

    EXPECT_TRUE(showsSoon("Velmora"));
    press("Velmora", {"ctrl+q"});
    EXPECT_THAT(program.wait(patience), Optional(0));
}

TEST_F(BareProgram, EndsInOrderWhenItIsToldToTerminate) {
    ChildProcess program = launch();
    ASSERT_TRUE(showsSoon("Velmora"));

    program.signal(SIGTERM);

    EXPECT_THAT(program.wait(patience), Optional(0));
    EXPECT_TRUE(waitUntil([&] {
        return std::ranges::none_of(session().graph().nodes(), [](const GraphNode& node) {
            return node.name.starts_with("velmora.") && node.name != microphone;
        });
    }));
}

TEST_F(BareProgram, RunsWithoutASoundServer) {
    const TemporaryFolder runtime("velmora-run");
    auto silent = environment();
    silent["XDG_RUNTIME_DIR"] = runtime.path();
    ChildProcess program = launch(silent);
    ASSERT_TRUE(showsSoon("Velmora"));

    press("Velmora", {"ctrl+q"});

    EXPECT_THAT(program.wait(patience), Optional(0));
}

} // namespace
} // namespace velmora
