#include "platform/desktop/DesktopApplications.h"
#include "platform/desktop/FakeDesktop.h"
#include "platform/simulated/SimulatedMainQueue.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

// Which application a process is, told from the files of a fake /proc.
class ApplicationIdentity : public testing::Test {
protected:
    std::string idOf(std::int32_t pid) {
        const auto application = applications().byPid(pid);
        return application ? application->bundleID : "not running";
    }

    DesktopApplications& applications() {
        if (!applications_) {
            applications_.emplace(queue,
                                  DesktopApplications::Options{.procRoot = desktop.proc(),
                                                               .dataFolders = {desktop.data()},
                                                               .nameOf = nameOf});
        }
        return *applications_;
    }

    FakeDesktop desktop;
    SimulatedMainQueue queue;
    std::function<std::string(std::int32_t)> nameOf;

private:
    std::optional<DesktopApplications> applications_;
};

TEST_F(ApplicationIdentity, ComesFromTheSandboxFirst) {
    desktop.addEntry("org.example.Boxed", "Name=Boxed\n");
    desktop.addEntry("player");
    desktop.addProcess({.pid = 10,
                        .name = "player",
                        .group = "app-gnome-player-1.scope",
                        .flatpakInfo = "[Application]\nname=org.example.Boxed\n"});

    EXPECT_EQ(applications().byPid(10),
              (RunningApplication{
                  .pid = 10, .name = "Boxed", .bundleID = "org.example.Boxed", .regular = true}));
}

TEST_F(ApplicationIdentity, WithoutAnEntryIsNamedAsTheApplicationCallsItself) {
    desktop.addProcess({.pid = 10, .name = "python3"});
    desktop.addProcess({.pid = 11, .name = "python3"});
    nameOf = [](std::int32_t pid) { return pid == 10 ? "Radio" : ""; };

    EXPECT_EQ(applications().byPid(10)->name, "Radio");
    EXPECT_EQ(applications().byPid(11)->name, "python3");
}

TEST_F(ApplicationIdentity, WithAnEntryIsNamedByIt) {
    desktop.addEntry("player", "Name=Player\n");
    desktop.addProcess({.pid = 10, .name = "player"});
    nameOf = [](std::int32_t) { return "player-backend"; };

    EXPECT_EQ(applications().byPid(10)->name, "Player");
}

TEST_F(ApplicationIdentity, ComesFromTheControlGroupThen) {
    desktop.addEntry("music-web", "Exec=" + desktop.program("player").string() + " --app %U\n");
    desktop.addEntry("player");
    desktop.addProcess({.pid = 10, .name = "player", .group = "app-music\\x2dweb-77.scope"});

    EXPECT_EQ(idOf(10), "music-web");
}

TEST_F(ApplicationIdentity, ComesFromTheLaunchersMarkOnTheVeryProcess) {
    const auto file = desktop.addEntry("org.example.Launched");
    desktop.addProcess({.pid = 10,
                        .name = "something",
                        .environment = {{"GIO_LAUNCHED_DESKTOP_FILE", file},
                                        {"GIO_LAUNCHED_DESKTOP_FILE_PID", "10"}}});

    EXPECT_EQ(idOf(10), "org.example.Launched");
}

// A mixer in a group of its own launches another application, which inherits the group.
class LaunchedInsideAGroup : public ApplicationIdentity {
protected:
    LaunchedInsideAGroup() {
        desktop.addEntry("org.example.Mixer", "Exec=/bin/true\n");
        desktop.addProcess({.pid = 9, .name = "mixer", .group = group, .startTicks = 50});
    }
    static std::map<std::string, std::string> mark(const fs::path& entry, const std::string& pid) {
        return {{"GIO_LAUNCHED_DESKTOP_FILE", entry}, {"GIO_LAUNCHED_DESKTOP_FILE_PID", pid}};
    }

    const std::string group = "app-org.example.Mixer-9.scope";
    const fs::path launched = desktop.addEntry("org.example.Launched", "Exec=/bin/true\n");
};

TEST_F(LaunchedInsideAGroup, IsTheApplicationOfItsMark) {
    desktop.addProcess({.pid = 10,
                        .parent = 9,
                        .name = "something",
                        .environment = mark(launched, "10"),
                        .group = group});

    EXPECT_EQ(idOf(10), "org.example.Launched");
    EXPECT_EQ(applications().leader(10), 10);
    EXPECT_EQ(applications().byBundleID("org.example.Launched").size(), 1U);
    EXPECT_EQ(idOf(9), "org.example.Mixer");
}

TEST_F(LaunchedInsideAGroup, TakesItsHelpersWithIt) {
    desktop.addProcess({.pid = 10,
                        .parent = 9,
                        .name = "something",
                        .environment = mark(launched, "10"),
                        .group = group});
    desktop.addProcess({.pid = 11,
                        .parent = 10,
                        .name = "helper",
                        .environment = mark(launched, "10"),
                        .group = group});

    EXPECT_EQ(idOf(11), "org.example.Launched");
    EXPECT_EQ(applications().leader(11), 10);
}

TEST_F(LaunchedInsideAGroup, IsTheApplicationOfAWrapperThatHasEnded) {
    desktop.addProcess(
        {.pid = 11, .name = "something", .environment = mark(launched, "10"), .group = group});

    EXPECT_EQ(idOf(11), "org.example.Launched");
}

TEST_F(LaunchedInsideAGroup, IsKnownAsSoonAsItsMarkCanBeRead) {
    // The process starts 3 s before "now" and does not run its program at first.
    const auto ticks = static_cast<std::uint64_t>(99'997 * sysconf(_SC_CLK_TCK));
    desktop.addProcess(
        {.pid = 10, .parent = 9, .name = "mixer", .group = group, .startTicks = ticks});
    ASSERT_EQ(idOf(10), "org.example.Mixer");

    desktop.addProcess({.pid = 10,
                        .parent = 9,
                        .name = "mixer",
                        .environment = mark(launched, "10"),
                        .group = group,
                        .startTicks = ticks});

    EXPECT_EQ(idOf(10), "org.example.Launched");
}

TEST_F(LaunchedInsideAGroup, IsNotWhatASessionsMarkSays) {
    // Carried into the group by its first process, from a launcher that has ended…
    desktop.addProcess({.pid = 9,
                        .name = "mixer",
                        .environment = mark(launched, "5"),
                        .group = group,
                        .startTicks = 50});
    desktop.addProcess({.pid = 10,
                        .parent = 9,
                        .name = "helper",
                        .environment = mark(launched, "5"),
                        .group = group});
    EXPECT_EQ(idOf(10), "org.example.Mixer");

    // …or from one that lives elsewhere.
    desktop.addProcess({.pid = 5, .name = "session", .startTicks = 20});
    desktop.addEntry("org.example.New"); // all is asked anew
    EXPECT_EQ(idOf(10), "org.example.Mixer");
}

TEST_F(ApplicationIdentity, IgnoresAnInheritedMarkOfALauncherThatLives) {
    const auto file = desktop.addEntry("panel", "NoDisplay=true\n");
    desktop.addProcess({.pid = 9, .name = "panel-daemon", .startTicks = 50});
    desktop.addProcess({.pid = 10,
                        .name = "something",
                        .environment = {{"GIO_LAUNCHED_DESKTOP_FILE", file},
                                        {"GIO_LAUNCHED_DESKTOP_FILE_PID", "9"}}});

    EXPECT_EQ(idOf(10), "");
}

TEST_F(ApplicationIdentity, ComesFromTheMarkThatAVanishedWrapperLeft) {
    const auto file = desktop.addEntry("org.example.Wrapped");
    desktop.addProcess({.pid = 10,
                        .name = "something",
                        .environment = {{"GIO_LAUNCHED_DESKTOP_FILE", file},
                                        {"GIO_LAUNCHED_DESKTOP_FILE_PID", "9"}}});

    EXPECT_EQ(idOf(10), "org.example.Wrapped");
}

TEST_F(ApplicationIdentity, ComesFromTheMarkOfAWrapperWhoseNumberIsUsedAgain) {
    const auto file = desktop.addEntry("org.example.Wrapped");
    desktop.addProcess({.pid = 10,
                        .name = "something",
                        .environment = {{"GIO_LAUNCHED_DESKTOP_FILE", file},
                                        {"GIO_LAUNCHED_DESKTOP_FILE_PID", "9"}},
                        .startTicks = 100});
    desktop.addProcess({.pid = 9, .name = "later", .startTicks = 101});

    EXPECT_EQ(idOf(10), "org.example.Wrapped");
}

TEST_F(ApplicationIdentity, ComesFromTheProgramsName) {
    desktop.addEntry("org.example.Player");
    desktop.addProcess({.pid = 10, .name = "player"});

    EXPECT_EQ(idOf(10), "org.example.Player");
}

TEST_F(ApplicationIdentity, ComesFromTheScriptOfAnInterpreter) {
    desktop.addProgram("player.py");
    desktop.addEntry("org.example.Script",
                     "Exec=/bin/sh " + desktop.program("player.py").string() + "\n");
    desktop.addProcess({.pid = 10,
                        .name = "python3",
                        .executable = "/usr/bin/python3.11",
                        .arguments = {"python3", "/opt/player.py"}});
    desktop.addProcess({.pid = 11, .name = "python3", .executable = "/usr/bin/python3.11"});

    EXPECT_EQ(idOf(10), "org.example.Script");
    EXPECT_EQ(idOf(11), "");
}

TEST_F(ApplicationIdentity, ComesFromTheWindowClassWhenNoProgramMatches) {
    desktop.addEntry("org.example.Player", "StartupWMClass=Player-Bin\n");
    desktop.addProcess({.pid = 10, .name = "player-bin"});

    EXPECT_EQ(idOf(10), "org.example.Player");
}

TEST_F(ApplicationIdentity, OfAHelperIsItsParents) {
    desktop.addEntry("org.example.Browser");
    desktop.addProcess({.pid = 10, .name = "player"});
    desktop.addProcess({.pid = 11, .parent = 10, .name = "sandbox"});
    desktop.addProcess({.pid = 12, .parent = 11, .name = "audio-helper"});

    EXPECT_EQ(idOf(12), "org.example.Browser");
    EXPECT_EQ(applications().leader(12), 10);
    EXPECT_EQ(applications().byPid(12), applications().byPid(10));
}

TEST_F(ApplicationIdentity, OfAHelperStaysWhenItsParentEnds) {
    desktop.addEntry("org.example.Browser");
    desktop.addProcess({.pid = 10, .name = "player"});
    desktop.addProcess({.pid = 11, .parent = 10, .name = "helper"});
    ASSERT_EQ(idOf(11), "org.example.Browser");

    desktop.removeProcess(10);
    desktop.addProcess({.pid = 11, .parent = 1, .name = "helper"});

    EXPECT_EQ(idOf(11), "org.example.Browser");
    EXPECT_EQ(applications().leader(11), 11);
}

TEST_F(ApplicationIdentity, OfAProgramTypedIntoATerminalIsItsOwn) {
    desktop.addProgram("terminal");
    desktop.addEntry("org.example.Terminal",
                     "Exec=" + desktop.program("terminal").string() +
                         "\nCategories=System;TerminalEmulator;\n");
    const std::string group = "app-org.example.Terminal-5.scope";
    desktop.addProcess({.pid = 10, .name = "terminal", .group = group});
    desktop.addProcess(
        {.pid = 11, .parent = 10, .name = "bash", .group = group, .terminal = 34816});
    desktop.addProcess(
        {.pid = 12, .parent = 11, .name = "tone", .group = group, .terminal = 34816});

    EXPECT_EQ(applications().byPid(12),
              (RunningApplication{.pid = 12, .name = "tone", .bundleID = "", .regular = false}));
    EXPECT_EQ(idOf(10), "org.example.Terminal");
}

TEST_F(ApplicationIdentity, OfAProgramThatOutlivesItsTerminalIsItsOwn) {
    const auto file =
        desktop.addEntry("org.example.Terminal", "Categories=System;TerminalEmulator;\n");
    desktop.addProcess({.pid = 12,
                        .name = "tone",
                        .environment = {{"GIO_LAUNCHED_DESKTOP_FILE", file},
                                        {"GIO_LAUNCHED_DESKTOP_FILE_PID", "10"}},
                        .group = "app-org.example.Terminal-5.scope"});

    EXPECT_EQ(idOf(12), "");
}

TEST_F(ApplicationIdentity, OfAProgramTypedIntoAnEditorsTerminalIsItsOwn) {
    desktop.addEntry("org.example.Editor");
    const std::string group = "app-org.example.Editor-5.scope";
    desktop.addProcess({.pid = 10, .name = "player", .group = group});
    desktop.addProcess({.pid = 11, .parent = 10, .name = "zsh", .group = group, .terminal = 34817});
    desktop.addProcess(
        {.pid = 12, .parent = 11, .name = "tone", .group = group, .terminal = 34817});

    EXPECT_EQ(idOf(12), "");
    EXPECT_EQ(applications().leader(12), 12);
}

TEST_F(ApplicationIdentity, OfAProgramStartedByTheDesktopItselfIsItsOwn) {
    desktop.addEntry("org.example.Shell", "NoDisplay=true\n");
    desktop.addProcess({.pid = 10, .name = "player"});
    desktop.addProcess({.pid = 11, .parent = 10, .name = "tone"});

    EXPECT_EQ(idOf(11), "");
    EXPECT_FALSE(applications().byPid(10)->regular);
}

TEST_F(ApplicationIdentity, WithoutAnEntryIsTheProgramsName) {
    desktop.addProcess({.pid = 10, .name = "tone"});
    desktop.addProcess({.pid = 11,
                        .name = "a-very-long-pro", // as the kernel cuts it
                        .executable = "/usr/bin/a-very-long-program"});

    EXPECT_EQ(applications().byPid(10)->name, "tone");
    EXPECT_EQ(applications().byPid(11)->name, "a-very-long-program");
}

TEST_F(ApplicationIdentity, IsNoneForAProcessThatDoesNotRun) {
    EXPECT_EQ(applications().byPid(10), std::nullopt);
    EXPECT_EQ(applications().leader(10), 10);
    EXPECT_EQ(applications().byPid(-1), std::nullopt);
}

TEST_F(ApplicationIdentity, IsFoundAgainWhenTheNumberBelongsToANewProcess) {
    desktop.addEntry("org.example.Player");
    desktop.addProcess({.pid = 10, .name = "player", .startTicks = 100});
    ASSERT_EQ(idOf(10), "org.example.Player");

    desktop.addProcess(
        {.pid = 10, .name = "player", .executable = "/usr/bin/other", .startTicks = 200});

    EXPECT_EQ(idOf(10), "");
}

TEST_F(ApplicationIdentity, IsFoundAgainWhenTheProcessRunsAnotherProgram) {
    desktop.addEntry("org.example.Player");
    desktop.addProcess({.pid = 10, .name = "launcher"});
    ASSERT_EQ(idOf(10), "");

    desktop.addProcess({.pid = 10, .name = "player"});

    EXPECT_EQ(idOf(10), "org.example.Player");
}

TEST_F(ApplicationIdentity, IsFoundAgainWhenAnEntryIsInstalled) {
    desktop.addProcess({.pid = 10, .name = "player"});
    ASSERT_EQ(idOf(10), "");

    desktop.addEntry("org.example.Player");

    EXPECT_EQ(idOf(10), "org.example.Player");
}

TEST_F(ApplicationIdentity, MayStillChangeWhileTheProcessIsYoung) {
    // The process starts 3 s before "now"; its group is made a moment later.
    const auto ticks = static_cast<std::uint64_t>(99'997 * sysconf(_SC_CLK_TCK));
    desktop.addEntry("org.example.Player");
    desktop.addEntry("org.example.Late", "Exec=/bin/true\n");
    desktop.addProcess({.pid = 10, .name = "player", .startTicks = ticks});
    ASSERT_EQ(idOf(10), "org.example.Player");

    desktop.addProcess({.pid = 10,
                        .name = "player",
                        .group = "app-gnome-org.example.Late-10.scope",
                        .startTicks = ticks});

    EXPECT_EQ(idOf(10), "org.example.Late");
}

TEST_F(ApplicationIdentity, HasABirthThatNoOtherProcessHas) {
    desktop.write(desktop.proc() / "sys/kernel/random/boot_id", "0f4e9a11\n");
    desktop.addProcess({.pid = 10, .startTicks = 100});
    const auto birth = applications().birth(10);
    ASSERT_TRUE(birth.has_value());
    EXPECT_LT(*birth, std::uint64_t{1} << 53U);
    EXPECT_EQ(applications().birth(10), birth);

    desktop.addProcess({.pid = 10, .startTicks = 101});
    EXPECT_NE(applications().birth(10), birth);
    desktop.addProcess({.pid = 10, .startTicks = 100});
    desktop.write(desktop.proc() / "sys/kernel/random/boot_id", "1a2b3c4d\n");
    EXPECT_NE(applications().birth(10), birth);
    EXPECT_EQ(applications().birth(11), std::nullopt);
}

TEST_F(ApplicationIdentity, LeadsToTheTopmostProcessOfOneProgramFile) {
    desktop.addProcess({.pid = 10, .name = "session"});
    desktop.addProcess({.pid = 11, .parent = 10, .name = "game"});
    desktop.addProcess({.pid = 12, .parent = 11, .name = "game"});
    desktop.addProcess({.pid = 13, .parent = 12, .name = "game"});

    EXPECT_EQ(applications().leader(13), 11);
    EXPECT_EQ(applications().byPid(13)->pid, 11);
}

TEST_F(ApplicationIdentity, DoesNotLeadFromOneScriptToAnother) {
    desktop.addProcess({.pid = 10, .name = "a.py", .executable = "/usr/bin/python3.11"});
    desktop.addProcess(
        {.pid = 11, .parent = 10, .name = "b.py", .executable = "/usr/bin/python3.11"});

    EXPECT_EQ(applications().leader(11), 11);
}

TEST_F(ApplicationIdentity, DoesNotLeadToTheShellThatWrapsTheProgram) {
    const auto file = desktop.addEntry("org.example.Wrapped");
    desktop.addProcess({.pid = 10,
                        .name = "start",
                        .executable = "/usr/bin/dash",
                        .arguments = {"/bin/sh", "/opt/start"},
                        .environment = {{"GIO_LAUNCHED_DESKTOP_FILE", file},
                                        {"GIO_LAUNCHED_DESKTOP_FILE_PID", "10"}}});
    desktop.addProcess({.pid = 11, .parent = 10, .name = "wrapped-bin"});
    desktop.addProcess({.pid = 12, .parent = 11, .name = "helper"});

    EXPECT_EQ(applications().leader(12), 11);
    const auto instances = applications().byBundleID("org.example.Wrapped");
    ASSERT_EQ(instances.size(), 1U);
    EXPECT_EQ(instances[0].pid, 11);
}

TEST_F(ApplicationIdentity, ListsInstancesInTheOrderOfTheirStart) {
    desktop.addEntry("org.example.Player");
    desktop.addProcess({.pid = 30, .name = "player", .startTicks = 500});
    desktop.addProcess({.pid = 31, .parent = 30, .name = "helper", .startTicks = 501});
    desktop.addProcess({.pid = 20, .name = "player", .startTicks = 900});
    desktop.addProcess({.pid = 40, .name = "player", .startTicks = 100});

    std::vector<std::int32_t> pids;
    for (const auto& instance : applications().byBundleID("org.example.Player")) {
        pids.push_back(instance.pid);
    }
    EXPECT_EQ(pids, (std::vector<std::int32_t>{40, 30, 20}));
}

TEST_F(ApplicationIdentity, ListsNothingForAnIdentifierNobodyHas) {
    desktop.addProcess({.pid = 10, .name = "tone"});

    EXPECT_TRUE(applications().byBundleID("").empty());
    EXPECT_TRUE(applications().byBundleID("org.example.Nobody").empty());
}

TEST_F(ApplicationIdentity, EndsInALoopOfParents) {
    desktop.addProcess({.pid = 10, .parent = 11, .name = "a"});
    desktop.addProcess({.pid = 11, .parent = 10, .name = "a"});

    EXPECT_EQ(idOf(10), "");
}

} // namespace
} // namespace velmora
