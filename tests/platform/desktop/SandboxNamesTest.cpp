#include "platform/desktop/SandboxNames.h"

#include <gmock/gmock.h>

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> idsOf(const std::string& group) {
    return desktopIdsOfControlGroup("0::/user.slice/user-1000.slice/user@1000.service/app.slice/" +
                                    group + "\n");
}

TEST(ControlGroup, NamesTheEntryBetweenLauncherAndRandomPart) {
    EXPECT_THAT(idsOf("app-gnome-org.example.Player-4312.scope"),
                ElementsAre("org.example.Player", "gnome-org.example.Player"));
}

TEST(ControlGroup, NamesTheEntryWithoutALauncher) {
    EXPECT_THAT(idsOf("app-org.example.Player-8a3f.scope"), ElementsAre("org.example.Player"));
}

TEST(ControlGroup, TurnsEscapesBackIntoDashes) {
    EXPECT_THAT(idsOf("app-gnome-music\\x2dplayer-4312.scope"),
                ElementsAre("music-player", "gnome-music-player"));
}

TEST(ControlGroup, LeavesABrokenEscapeAsItIs) {
    EXPECT_THAT(idsOf("app-a\\x2-1.scope"), ElementsAre("a\\x2"));
    EXPECT_THAT(idsOf("app-a\\xzz-1.scope"), ElementsAre("a\\xzz"));
}

TEST(ControlGroup, OffersLongerReadingsForDashesThatWereNotEscaped) {
    EXPECT_THAT(idsOf("app-gnome-music-player-4312.scope"),
                ElementsAre("player", "music-player", "gnome-music-player"));
}

TEST(ControlGroup, NamesTheEntryOfAService) {
    EXPECT_THAT(idsOf("app-org.example.Player@9ab0.service"), ElementsAre("org.example.Player"));
    EXPECT_THAT(idsOf("app-dbus-org.example.Player.service"),
                ElementsAre("org.example.Player", "dbus-org.example.Player"));
}

TEST(ControlGroup, NamesTheEntryOfASnap) {
    EXPECT_THAT(idsOf("snap.player.tool-0f4e.scope"), ElementsAre("player_tool"));
    EXPECT_THAT(idsOf("snap.player.tool.0f4e-11.scope"), ElementsAre("player_tool"));
}

TEST(ControlGroup, LeavesTheDashesOfASnapsNames) {
    const std::string uuid = "0f4e9a11-5c3b-4d2e-8f6a-7b8c9d0e1f2a";
    EXPECT_THAT(idsOf("snap.my-player.player-web-" + uuid + ".scope"),
                ElementsAre("my-player_player-web"));
    EXPECT_THAT(idsOf("snap.my-player.player-web." + uuid + ".scope"),
                ElementsAre("my-player_player-web"));
    EXPECT_THAT(idsOf("snap.my-player.player-web.service"), ElementsAre("my-player_player-web"));
}

TEST(ControlGroup, NamesNothingThatCouldBeNoEntry) {
    EXPECT_THAT(idsOf("app-player--12.scope"), ElementsAre("player-"));
    EXPECT_THAT(idsOf("app--12.scope"), IsEmpty());
    EXPECT_THAT(idsOf("app-..\\x2fplayer-12.scope"), IsEmpty());
}

TEST(ControlGroup, TakesTheInnermostUnit) {
    EXPECT_THAT(idsOf("app-gnome-outer-1.scope/app-gnome-inner-2.scope/tab(7).scope"),
                ElementsAre("inner", "gnome-inner"));
}

TEST(ControlGroup, NamesNothingForASessionOrNoUnitAtAll) {
    EXPECT_THAT(desktopIdsOfControlGroup("0::/user.slice/user-1000.slice/session-2.scope\n"),
                IsEmpty());
    EXPECT_THAT(desktopIdsOfControlGroup("0::/\n"), IsEmpty());
    EXPECT_THAT(desktopIdsOfControlGroup(""), IsEmpty());
}

TEST(Flatpak, NamesItsApplication) {
    EXPECT_EQ(flatpakApplication("[Application]\nname=org.example.Player\nruntime=x\n"),
              "org.example.Player");
}

TEST(Flatpak, NamesItsApplicationWhateverStandsAroundIt) {
    EXPECT_EQ(flatpakApplication("# made by flatpak\n[Instance]\nname=other\n\n"
                                 "[Application]\nruntime = x\nname = org.example.Player\n"),
              "org.example.Player");
}

TEST(Flatpak, NamesNothingInAnotherSection) {
    EXPECT_EQ(flatpakApplication("[Runtime]\nname=org.example.Platform\n[Instance]\n"), "");
    EXPECT_EQ(flatpakApplication("name=org.example.Player\n"), "");
    EXPECT_EQ(flatpakApplication(""), "");
}

} // namespace
} // namespace velmora
