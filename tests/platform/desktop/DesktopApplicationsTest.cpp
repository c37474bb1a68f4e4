#include "platform/desktop/DesktopApplications.h"

#include "platform/contract/ApplicationsContract.h"
#include "platform/desktop/LaunchRig.h"

#include <cstdlib>
#include <unistd.h>

namespace velmora {

INSTANTIATE_TYPED_TEST_SUITE_P(Desktop, ApplicationsContract, LaunchRig);

namespace {

class DesktopLaunch : public ApplicationsContract<LaunchRig> {
protected:
    const std::string id = idOf("Player");

    std::string executableOf(std::int32_t pid) { return ProcFiles("/proc").executable(pid); }

    /// Launches the entry and expects the player itself to come up, under the entry's name.
    void expectPlayer(const std::string& player) {
        const auto launched = launch(locationOf(id));

        ASSERT_TRUE(launched.has_value());
        EXPECT_EQ(executableOf(launched->pid), player);
        EXPECT_EQ(launched->bundleID, id);
        EXPECT_EQ(applications().byPid(launched->pid), launched);
        EXPECT_EQ(applications().byBundleID(id), std::vector{*launched});
    }
};

TEST_F(DesktopLaunch, BringsTheProgramBehindAWrapperThatWaits) {
    const std::string player = rig.addPlayer();
    rig.addEntry(id, "Exec=" + rig.addScript(player + "\nexit") + "\n");

    expectPlayer(player);
}

TEST_F(DesktopLaunch, BringsTheProgramBehindAWrapperThatEnds) {
    const std::string player = rig.addPlayer();
    rig.addEntry(id, "Exec=" + rig.addScript(player + " &") + "\n");

    expectPlayer(player);
}

TEST_F(DesktopLaunch, BringsTheProgramThatTakesItsWrappersPlace) {
    const std::string player = rig.addPlayer();
    rig.addEntry(id, "Exec=" + rig.addScript("exec " + player) + "\n");

    expectPlayer(player);
}

TEST_F(DesktopLaunch, BringsAnApplicationThatCouldBeStartedOverTheBus) {
    const std::string player = rig.addPlayer();
    rig.addEntry(id, "DBusActivatable=true\nExec=" + player + "\n");

    expectPlayer(player);
}

TEST_F(DesktopLaunch, BringsNothingWhenTheProgramHasBeenRemoved) {
    const std::string player = rig.addPlayer();
    rig.addEntry(id, "Exec=" + player + "\n");
    const std::string location = locationOf(id);
    fs::remove(player);

    EXPECT_EQ(launch(location), std::nullopt);
}

TEST_F(DesktopLaunch, BringsNothingWhenTheWrapperFails) {
    rig.addEntry(id, "Exec=" + rig.addScript("exit 1") + "\n");

    EXPECT_EQ(launch(locationOf(id)), std::nullopt);
}

TEST_F(DesktopLaunch, ForgetsLaunchesUnderWayWhenItIsDestroyed) {
    QtMainQueue queue;
    rig.install(id, "Player");
    bool completed = false;
    {
        DesktopApplications shortLived(queue, {.dataFolders = {rig.desktop.data()}});
        shortLived.launch(shortLived.installed(id)->location,
                          [&](const auto&) { completed = true; });
    }
    EXPECT_TRUE(rig.runUntil([&] { return !applications().byBundleID(id).empty(); }));

    EXPECT_FALSE(completed);
}

TEST_F(DesktopLaunch, SaysWhoItIsItself) {
    EXPECT_EQ(applications().ownPid(), getpid());
    EXPECT_EQ(applications().byPid(getpid())->pid, rig.applications().leader(getpid()));
}

TEST(XdgDataFolders, AreTheUsersThenTheSystems) {
    setenv("HOME", "/home/ada", 1);
    unsetenv("XDG_DATA_HOME");
    setenv("XDG_DATA_DIRS", "/one:relative::/two", 1);
    using Folders = std::vector<fs::path>;
    EXPECT_EQ(DesktopApplications::xdgDataFolders(),
              (Folders{"/home/ada/.local/share", "/one", "/two"}));

    setenv("XDG_DATA_HOME", "/data", 1);
    unsetenv("XDG_DATA_DIRS");
    EXPECT_EQ(DesktopApplications::xdgDataFolders(),
              (Folders{"/data", "/usr/local/share", "/usr/share"}));
}

} // namespace
} // namespace velmora
