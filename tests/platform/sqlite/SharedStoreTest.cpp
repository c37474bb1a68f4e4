// Two mixers with one settings file: in two sessions, or on two machines with one home.
#include "platform/sqlite/StoreFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using Kind = StoreProblem::Kind;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

class SharedStore : public testing::Test {
protected:
    SqliteDefaultsStore& first() { return disk.store(); }

    StoreOnDisk disk;
};

TEST_F(SharedStore, IsReadByTheSecondWhichSaysSoOnceAndWritesNothing) {
    first().set("volume", 0.5);
    const std::string file = contentOf(disk.path());
    const std::string log = contentOf(disk.log());

    SqliteDefaultsStore second(disk.path());
    int told = 0;
    const auto connection = second.problemsChanged().connect([&] { ++told; });
    EXPECT_EQ(second.read<double>("volume"), 0.5);
    EXPECT_NE(second.set("volume", 0.25), statusOk);
    EXPECT_NE(second.set("language", std::string("en")), statusOk);

    EXPECT_THAT(second.problems(), ElementsAre(Field(&StoreProblem::kind, Kind::inUse)));
    EXPECT_EQ(told, 0) << "it was told at the start";
    EXPECT_EQ(second.read<double>("volume"), 0.25);
    EXPECT_TRUE(contentOf(disk.path()) == file);
    EXPECT_TRUE(contentOf(disk.log()) == log);
    EXPECT_TRUE(disk.problems.empty());
}

TEST_F(SharedStore, IsWrittenByTheSecondAfterTheFirstHasGone) {
    first().set("volume", 0.5);
    {
        SqliteDefaultsStore second(disk.path());
        second.set("language", std::string("en"));
        disk.quit();

        EXPECT_EQ(second.set("appearance", std::string("dark")), statusOk);

        EXPECT_THAT(second.problems(), IsEmpty());
    }
    EXPECT_EQ(first().read<double>("volume"), 0.5);
    EXPECT_EQ(first().read<std::string>("language"), "en");
    EXPECT_EQ(first().read<std::string>("appearance"), "dark");
}

} // namespace
} // namespace velmora
