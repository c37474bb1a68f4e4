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

std::map<Serial, MutedStream> read(const std::string& lines) {
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
              (std::map<Serial, MutedStream>{{70, plain}, {71, sent}}));
}

TEST(LastWill, ForgetsWhatWasTakenBack) {
    EXPECT_EQ(read(added(plain) + added(sent) + "remove 70\n" + "remove 5\n"),
              (std::map<Serial, MutedStream>{{71, sent}}));
}

TEST(LastWill, TakesALaterEntryForTheSameStream) {
    MutedStream again = plain;
    again.sink = 95;

    EXPECT_EQ(read(added(plain) + added(again)), (std::map<Serial, MutedStream>{{70, again}}));
}

TEST(LastWill, LeavesOutAnEntryOfWhichOnlyThePartBeforeTheEndCame) {
    const std::string line = added(sent);

    EXPECT_EQ(read(added(plain) + line.substr(0, line.size() / 2)),
              (std::map<Serial, MutedStream>{{70, plain}}));
}

TEST(LastWill, IsEmptyWithoutWords) {
    EXPECT_TRUE(read("").empty());
}

} // namespace
} // namespace velmora::pipewire
