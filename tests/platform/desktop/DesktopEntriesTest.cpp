#include "platform/desktop/DesktopEntries.h"

#include "platform/desktop/FakeDesktop.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace velmora {
namespace {

class DesktopEntriesTest : public testing::Test {
protected:
    DesktopEntries read() { return DesktopEntries({desktop.data(), desktop.systemData()}); }

    FakeDesktop desktop;
};

TEST_F(DesktopEntriesTest, AreNamedAfterTheirPlaceBelowTheFolder) {
    desktop.addEntry("org.example.Player");
    desktop.addEntry("kde/tools/mixer");

    const auto entries = read();

    EXPECT_NE(entries.find("org.example.Player"), nullptr);
    EXPECT_NE(entries.find("kde-tools-mixer"), nullptr);
    EXPECT_EQ(entries.all().size(), 2U);
}

TEST_F(DesktopEntriesTest, TakeWhatTheFileSays) {
    const auto path = desktop.addEntry("p",
                                       "Name=Player\nIcon=player.png\nStartupWMClass=Player-Main\n"
                                       "Categories=Audio;TerminalEmulator;\nNoDisplay=true\n");

    const auto entries = read();
    const auto* entry = entries.find("p");

    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->path, path);
    EXPECT_EQ(entry->name, "Player");
    EXPECT_EQ(entry->icon, "player");
    EXPECT_EQ(entry->programs, std::vector<std::string>{"player"});
    EXPECT_TRUE(entry->isTerminal);
    EXPECT_FALSE(entry->isVisible);
    EXPECT_FALSE(entry->isOffered);
    EXPECT_EQ(entries.findWindowClass("player-main"), entry);
}

TEST_F(DesktopEntriesTest, BearTheirNameInTheDesktopsLanguage) {
    setenv("LC_ALL", "fr_FR.UTF-8", 1);
    desktop.addEntry("p", "Name=Player\nName[de]=Spieler\nName[fr]=Lecteur\n");

    EXPECT_EQ(read().find("p")->name, "Lecteur");
    unsetenv("LC_ALL");
}

TEST_F(DesktopEntriesTest, LeaveOutWhatIsNotInstalledOrNoApplication) {
    desktop.addEntry("gone", "Exec=/nowhere/player\n");
    desktop.addEntry("hidden", "Hidden=true\n");
    desktop.addEntry("link", "Type=Link\n");
    FakeDesktop::write(desktop.data() / "applications" / "noise.desktop", "\xFF\x00[");

    EXPECT_TRUE(read().all().empty());
}

TEST_F(DesktopEntriesTest, OfTheUserComeBeforeThoseOfTheSystem) {
    desktop.addEntryIn(desktop.systemData(), "p", "Name=System\n");
    desktop.addEntry("p", "Name=Mine\n");

    EXPECT_EQ(read().find("p")->name, "Mine");
}

TEST_F(DesktopEntriesTest, OfTheUserMayHideThoseOfTheSystem) {
    desktop.addEntryIn(desktop.systemData(), "p");
    desktop.addEntry("p", "Hidden=true\n");

    EXPECT_EQ(read().find("p"), nullptr);
}

TEST_F(DesktopEntriesTest, AreFoundByTheProgramWithTheVisiblePlainOneFirst) {
    const std::string program = desktop.program("player");
    desktop.addEntry("a-hidden", "NoDisplay=true\n");
    desktop.addEntry("b-private", "Exec=" + program + " --private %U\n");
    desktop.addEntry("c-plain", "Exec=" + program + " %U\n");

    desktop.addEntry("d-hidden", "NoDisplay=true\n");
    desktop.addEntry("e-private", "Exec=" + program + " --private %U\n");

    EXPECT_EQ(read().findProgram("player")->id, "c-plain");
}

TEST_F(DesktopEntriesTest, AreFoundByTheWindowClassWithTheVisibleOneFirst) {
    desktop.addEntry("a-hidden", "NoDisplay=true\nStartupWMClass=Player\n");
    desktop.addEntry("b-shown", "StartupWMClass=player\n");
    desktop.addEntry("c-hidden", "NoDisplay=true\nStartupWMClass=PLAYER\n");

    EXPECT_EQ(read().findWindowClass("Player")->id, "b-shown");
}

TEST_F(DesktopEntriesTest, NoticeNewChangedAndRemovedFiles) {
    auto entries = read();
    desktop.addEntry("p", "Name=First\n");
    entries.refresh();
    ASSERT_NE(entries.find("p"), nullptr);
    const auto generation = entries.generation();

    // As editors and package managers do: a new file takes the old one's place.
    const auto file = desktop.addEntry("new", "Name=Second, longer\n");
    fs::rename(file, desktop.data() / "applications" / "p.desktop");
    entries.refresh();
    EXPECT_EQ(entries.find("p")->name, "Second, longer");
    EXPECT_GT(entries.generation(), generation);

    fs::remove(desktop.data() / "applications" / "p.desktop");
    entries.refresh();
    EXPECT_TRUE(entries.all().empty());
    EXPECT_EQ(entries.findProgram("player"), nullptr);
}

TEST_F(DesktopEntriesTest, KeepTheirGenerationWhileNothingChanges) {
    desktop.addEntry("p");
    auto entries = read();
    const auto generation = entries.generation();

    entries.refresh();
    entries.refresh();

    EXPECT_EQ(entries.generation(), generation);
}

TEST_F(DesktopEntriesTest, SurviveAFolderLinkedIntoItself) {
    desktop.addEntry("p");
    fs::create_directory_symlink(desktop.data() / "applications",
                                 desktop.data() / "applications" / "again");

    EXPECT_NE(read().find("p"), nullptr);
}

} // namespace
} // namespace velmora
