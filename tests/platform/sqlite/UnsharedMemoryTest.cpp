// A file system on which no memory can be shared, as some network and user-space ones: the log's
// index has no place there.
#include "platform/sqlite/FaultyDisk.h"
#include "platform/sqlite/StoreFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using testing::IsEmpty;

class UnsharedMemory : public testing::Test {
protected:
    UnsharedMemory() { faulty.sharesMemory = false; }

    FaultyDisk faulty;
    StoreOnDisk disk;
};

TEST_F(UnsharedMemory, KeepsEverySettingAndSaysNothing) {
    EXPECT_EQ(disk.store().set("volume", 0.5), statusOk);
    disk.nextLaunch();
    EXPECT_EQ(disk.store().read<double>("volume"), 0.5);
    EXPECT_EQ(disk.store().set("volume", 0.75), statusOk);
    disk.nextLaunch();

    EXPECT_EQ(disk.store().read<double>("volume"), 0.75);
    EXPECT_THAT(disk.problems, IsEmpty());
}

TEST_F(UnsharedMemory, ReadsAFileThatWasMadeWhereMemoryIsShared) {
    faulty.sharesMemory = true;
    disk.store().set("volume", 0.5);
    disk.quit();
    runSql(disk.path(), "UPDATE defaults SET value=x'000000000000E83F'", true); // 0.75
    faulty.sharesMemory = false;

    EXPECT_EQ(disk.store().read<double>("volume"), 0.75);
    EXPECT_EQ(disk.store().set("volume", 0.25), statusOk);
    disk.quit();
    faulty.sharesMemory = true;

    EXPECT_EQ(disk.store().read<double>("volume"), 0.25);
    EXPECT_THAT(disk.problems, IsEmpty());
}

} // namespace
} // namespace velmora
