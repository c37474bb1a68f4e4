#include "operations/LaunchRequest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using Kind = LaunchRequest::Kind;
using testing::ElementsAre;

LaunchRequest request(const std::vector<const char*>& arguments) {
    return launchRequest(arguments);
}

TEST(LaunchRequest, NothingMeansTheWindows) {
    EXPECT_EQ(request({}).kind, Kind::windows);
}

TEST(LaunchRequest, TheWindowsMayStayHiddenOrBeLeftOut) {
    EXPECT_EQ(request({"--hidden"}).kind, Kind::hidden);
    EXPECT_EQ(request({"--headless"}).kind, Kind::headless);
}

TEST(LaunchRequest, QtsOwnOptionsAreLeftToIt) {
    EXPECT_EQ(request({"-platform", "offscreen"}).kind, Kind::windows);
    EXPECT_TRUE(request({"-platform", "offscreen"}).hasQtsOptions);
    EXPECT_EQ(request({"--hidden", "-session", "17"}).kind, Kind::hidden);
}

TEST(LaunchRequest, WordsAreACommand) {
    const LaunchRequest gain = request({"gain", "Player", "-6"});

    EXPECT_EQ(gain.kind, Kind::command);
    EXPECT_THAT(gain.words, ElementsAre("gain", "Player", "-6"));
    EXPECT_FALSE(gain.startsMixer);
}

TEST(LaunchRequest, StartMayStandAnywhereAndIsNoWordOfTheCommand) {
    for (const auto& arguments : std::vector<std::vector<const char*>>{
             {"--start", "status", "--json"}, {"status", "--json", "--start"}}) {
        const LaunchRequest status = request(arguments);
        EXPECT_EQ(status.kind, Kind::command);
        EXPECT_TRUE(status.startsMixer);
        EXPECT_THAT(status.words, ElementsAre("status", "--json"));
    }
}

TEST(LaunchRequest, JsonMayStandBeforeTheCommand) {
    EXPECT_THAT(request({"--json", "status"}).words, ElementsAre("--json", "status"));
}

TEST(LaunchRequest, HelpAndVersionGoBeforeEverythingElse) {
    EXPECT_EQ(request({"gain", "--help"}).kind, Kind::help);
    EXPECT_EQ(request({"-h"}).kind, Kind::help);
    EXPECT_EQ(request({"--hidden", "--version"}).kind, Kind::version);
}

TEST(LaunchRequest, AnUnknownOptionIsNamed) {
    EXPECT_EQ(request({"--loud"}).kind, Kind::unknownOption);
    EXPECT_THAT(request({"--loud"}).words, ElementsAre("--loud"));
}

TEST(LaunchRequest, OptionsOfACommandMeanNothingWithoutOne) {
    EXPECT_EQ(request({"--start"}).kind, Kind::unknownOption);
    EXPECT_EQ(request({"--json"}).kind, Kind::unknownOption);
}

} // namespace
} // namespace velmora
