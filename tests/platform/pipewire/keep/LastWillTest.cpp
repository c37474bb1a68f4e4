#include "platform/pipewire/keep/LastWill.h"

#include <gtest/gtest.h>
#include <sstream>

namespace velmora::pipewire {
namespace {

const MutedStream plain{.stream = 70, .id = 61, .sink = 90, .targetObject = {}, .targetNode = {}};
const MutedStream sent{.stream = 71,
                       .id = 62,
                       .sink = 91,
                       .targetObject = MetadataValue{.type = "Spa:Id", .value = "44"},
                       .targetNode = MetadataValue{.type = "", .value = "a \"sink\" of\nmine"}};

Bequest read(const std::string& lines) {
    std::istringstream in(lines);
    return readLastWill(in);
}

std::string added(const MutedStream& muted) {
    std::ostringstream line;
    line << "add " << muted << '\n';
    return line.str();
}

TEST(LastWill, KeepsWhatTheUserHadSet) {
    EXPECT_EQ(read(added(plain) + added(sent)),
              (Bequest{.streams = {{70, plain}, {71, sent}}, .routes = {}}));
}

TEST(LastWill, ForgetsWhatWasTakenBack) {
    EXPECT_EQ(read(added(plain) + added(sent) + "remove 70\n" + "remove 5\n"),
              (Bequest{.streams = {{71, sent}}, .routes = {}}));
}

TEST(LastWill, TakesALaterEntryForTheSameStream) {
    MutedStream again = plain;
    again.sink = 95;

    EXPECT_EQ(read(added(plain) + added(again)), (Bequest{.streams = {{70, again}}, .routes = {}}));
}

TEST(LastWill, LeavesOutAnEntryOfWhichOnlyThePartBeforeTheEndCame) {
    const std::string line = added(sent);

    EXPECT_EQ(read(added(plain) + line.substr(0, line.size() / 2)),
              (Bequest{.streams = {{70, plain}}, .routes = {}}));
}

TEST(LastWill, KeepsTheDevicesThatAreToBeRemembered) {
    const RouteKey role{.property = "media.role", .value = "Music"};
    const RouteKey name{.property = "application.name", .value = "A \"player\" of mine"};

    EXPECT_EQ(read("route \"media.role\" \"Music\" \"headset\"\n"
                   "route \"application.name\" \"A \\\"player\\\" of mine\" \"\"\n"),
              (Bequest{.streams = {}, .routes = {{role, "headset"}, {name, ""}}}));
    EXPECT_EQ(read("route \"media.role\" \"Music\" \"headset\"\n"
                   "done \"media.role\" \"Music\"\n"),
              Bequest{});
}

TEST(LastWill, IsEmptyWithoutWords) {
    EXPECT_EQ(read(""), Bequest{});
}

} // namespace
} // namespace velmora::pipewire
