#include "platform/pipewire/view/StoredRoute.h"

#include <gtest/gtest.h>
#include <sstream>

namespace velmora::pipewire {
namespace {

const RouteKey music{.property = "media.role", .value = "Music"};
const RouteKey player{.property = "application.name", .value = "Player [2] = a\\b"};

std::optional<std::string> stored(const std::string& file, const RouteKey& key) {
    std::istringstream in(file);
    return storedDevice(in, key);
}

TEST(RouteKey, IsTheRoleBeforeAnythingElse) {
    EXPECT_EQ(routeKey({{"application.name", "player"},
                        {"media.role", "Music"},
                        {"media.name", "song"},
                        {"node.name", "player"}},
                       RoleKeys::every),
              music);
}

TEST(RouteKey, IsNoRoleButANotificationsToANewerSessionManager) {
    EXPECT_EQ(
        routeKey({{"application.name", "player"}, {"media.role", "Music"}}, RoleKeys::notification),
        (RouteKey{.property = "application.name", .value = "player"}));
    EXPECT_EQ(routeKey({{"application.name", "player"}, {"media.role", "Notification"}},
                       RoleKeys::notification),
              (RouteKey{.property = "media.role", .value = "Notification"}));
}

TEST(RouteKey, IsWhatTheSessionManagersVersionMakesIt) {
    const auto rolesOf = [](const std::string& version) {
        return roleKeysOf({{"application.version", version}});
    };
    EXPECT_EQ(roleKeysOf({}), RoleKeys::every);
    EXPECT_EQ(rolesOf("0.5.8"), RoleKeys::every);
    EXPECT_EQ(rolesOf("0.5.14"), RoleKeys::every);
    EXPECT_EQ(rolesOf("0.5.15"), RoleKeys::notification);
    EXPECT_EQ(rolesOf("0.5.18-rc1"), RoleKeys::notification);
    EXPECT_EQ(rolesOf("0.6"), RoleKeys::notification);
    EXPECT_EQ(rolesOf("1.0.0"), RoleKeys::notification);
    EXPECT_EQ(rolesOf("unknown"), RoleKeys::every);
}

TEST(RouteKey, IsTheApplicationBeforeTheStreamsOwnNames) {
    EXPECT_EQ(routeKey({{"media.name", "song"}, {"application.name", "player"}}, RoleKeys::every),
              (RouteKey{.property = "application.name", .value = "player"}));
    EXPECT_EQ(routeKey({{"node.name", "player"}, {"media.name", "song"}}, RoleKeys::every),
              (RouteKey{.property = "media.name", .value = "song"}));
    EXPECT_TRUE(routeKey({}, RoleKeys::every).isEmpty());
}

TEST(StoredDevice, IsReadFromOneLineForEachValue) {
    const std::string file = "[restore-stream]\n"
                             "Input/Audio:media.role:Music:target=microphone\n"
                             "Output/Audio:media.role:Music:mute=false\n"
                             "Output/Audio:media.role:Music:target=head\\sset\n";

    EXPECT_EQ(stored(file, music), "head set");
    EXPECT_EQ(stored(file, player), std::nullopt);
}

TEST(StoredDevice, IsReadFromOneObjectForEachKey) {
    const std::string file = "[stream-properties]\n"
                             "Output/Audio:media.role:Movie={\"target\":\"other\"}\n"
                             "Output/Audio:media.role:Music={\"mute\":false, "
                             "\"target\":\"headset\", \"volume\":1.000000}\n";

    EXPECT_EQ(stored(file, music), "headset");
}

TEST(StoredDevice, IsFoundUnderAKeyWithMarks) {
    EXPECT_EQ(
        stored("Output/Audio:application.name:Player\\s\\o2\\c\\s\\e\\sa\\\\b:target=headset\n",
               player),
        "headset");
}

TEST(StoredDevice, IsNoneInWhatCannotBeRead) {
    EXPECT_EQ(stored("", music), std::nullopt);
    EXPECT_EQ(stored("Output/Audio:media.role:Music={\"target\":\n", music), std::nullopt);
    EXPECT_EQ(stored("Output/Audio:media.role:Music=[1]\n", music), std::nullopt);
}

} // namespace
} // namespace velmora::pipewire
