#include "platform/pipewire/view/News.h"

#include <gtest/gtest.h>

namespace velmora::pipewire {
namespace {

class NewsTest : public testing::Test {
protected:
    NewsTest() {
        now.isAvailable = true;
        now.rateHz = 48000;
        now.devices = {{.node = 7, .uid = "speakers", .name = "Speakers", .outputs = 2}};
    }

    bool isOutputTold(std::optional<std::string> uid) {
        now.defaultOutput = std::move(uid);
        return news.update(now).isDefaultOutputNew;
    }
    bool isChangeTold() { return news.update(now).isAnythingElseNew; }

    Surroundings now;
    News news;
};

TEST_F(NewsTest, AreNoneBeforeTheStart) {
    EXPECT_FALSE(isOutputTold("speakers"));
    now.deaths = 1;
    EXPECT_FALSE(isChangeTold());
}

TEST_F(NewsTest, TellAnotherDefaultOutput) {
    now.defaultOutput = "speakers";
    news.start(now);

    EXPECT_FALSE(isOutputTold("speakers"));
    EXPECT_TRUE(isOutputTold("headset"));
    EXPECT_FALSE(isOutputTold("headset"));
}

TEST_F(NewsTest, TellTheFirstDefaultOutputWhenThereWasNone) {
    news.start(now);

    EXPECT_TRUE(isOutputTold("speakers"));
}

TEST_F(NewsTest, TellThatTheDefaultOutputIsBackButNotThatThereIsNone) {
    now.defaultOutput = "speakers";
    news.start(now);

    EXPECT_FALSE(isOutputTold(std::nullopt));
    EXPECT_TRUE(isOutputTold("speakers"));
    EXPECT_FALSE(isOutputTold("speakers"));
}

TEST_F(NewsTest, TellTheSameDefaultOutputAfterALoss) {
    now.defaultOutput = "speakers";
    news.start(now);

    news.lose();

    EXPECT_FALSE(isOutputTold(std::nullopt));
    EXPECT_TRUE(isOutputTold("speakers"));
    EXPECT_FALSE(isOutputTold("speakers"));
}

TEST_F(NewsTest, TellADefaultOutputOnlyOnceTheMicrophoneIsThere) {
    news.start(now);
    now.lacksMicrophone = true;
    EXPECT_FALSE(isOutputTold("speakers"));

    now.lacksMicrophone = false;

    EXPECT_TRUE(isOutputTold("speakers"));
}

TEST_F(NewsTest, TellEveryOtherChangeOnce) {
    news.start(now);
    EXPECT_FALSE(isChangeTold());

    now.rateHz = 96000;
    now.processes = {{3, {}}};
    EXPECT_TRUE(isChangeTold());
    EXPECT_FALSE(isChangeTold());

    now.devices.front().outputs = 4;
    EXPECT_TRUE(isChangeTold());

    now.recorded = {{7, {.areAny = true}}};
    EXPECT_TRUE(isChangeTold());
    EXPECT_FALSE(isChangeTold());

    now.deaths = 1;
    EXPECT_TRUE(isChangeTold());

    now.isAvailable = false;
    EXPECT_TRUE(isChangeTold());
    EXPECT_FALSE(isChangeTold());
}

TEST_F(NewsTest, DoNotTellADefaultOutputAsAnyOtherChange) {
    news.start(now);

    now.defaultOutput = "speakers";

    EXPECT_FALSE(isChangeTold());
}

TEST_F(NewsTest, TellALossThatIsOverBeforeAnybodyLooks) {
    news.start(now);

    news.lose();

    EXPECT_TRUE(isChangeTold());
    EXPECT_FALSE(isChangeTold());
}

} // namespace
} // namespace velmora::pipewire
