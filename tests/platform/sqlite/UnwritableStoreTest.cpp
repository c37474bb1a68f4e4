#include "platform/sqlite/StoreFixture.h"
#include "platform/sqlite/Unprivileged.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

using Kind = StoreProblem::Kind;

class UnwritableStore : public testing::Test {
protected:
    /// An earlier launch kept a volume of 0.25.
    void SetUp() override {
        disk.store().set("volume", 0.25);
        disk.quit();
    }
    void TearDown() override { fs::permissions(folder(), fs::perms::owner_all); }

    [[nodiscard]] fs::path folder() const { return disk.path().parent_path(); }

    void expectToldOnce(Kind kind) const {
        ASSERT_EQ(disk.problems.size(), 1U);
        EXPECT_EQ(disk.problems[0].kind, kind);
        EXPECT_EQ(disk.problems[0].file, disk.path());
    }

    void expectReadingAloneAndMemory() {
        EXPECT_EQ(disk.store().read<double>("volume"), 0.25);
        EXPECT_NE(disk.store().set("volume", 0.5), statusOk);
        EXPECT_NE(disk.store().set("volume", 0.75), statusOk);
        EXPECT_EQ(disk.store().read<double>("volume"), 0.75);
        expectToldOnce(Kind::unwritable);
    }

    StoreOnDisk disk;
};

TEST_F(UnwritableStore, IsReadAndToldOnceInAReadOnlyFolder) {
    const Unprivileged user(disk.folder());
    fs::permissions(folder(), fs::perms::owner_read | fs::perms::owner_exec);

    expectReadingAloneAndMemory();
}

TEST_F(UnwritableStore, IsReadAndToldOnceWhenTheFileIsReadOnly) {
    const Unprivileged user(disk.folder());
    fs::permissions(disk.path(), fs::perms::owner_read);

    expectReadingAloneAndMemory();
}

TEST_F(UnwritableStore, IsReadTogetherWithTheLogThatAKillLeft) {
    runSql(disk.path(), "UPDATE defaults SET value=x'000000000000E83F'", true); // 0.75
    const Unprivileged user(disk.folder());
    fs::permissions(folder(), fs::perms::owner_read | fs::perms::owner_exec);
    fs::permissions(disk.path(), fs::perms::owner_read);

    EXPECT_EQ(disk.store().read<double>("volume"), 0.75);
    expectToldOnce(Kind::unwritable);
}

TEST_F(UnwritableStore, WritesEverythingOnceTheFolderAllowsIt) {
    const Unprivileged user(disk.folder());
    fs::permissions(folder(), fs::perms::owner_read | fs::perms::owner_exec);
    disk.store().set("volume", 0.5);
    fs::permissions(folder(), fs::perms::owner_all);

    EXPECT_EQ(disk.store().set("language", std::string("en")), statusOk);

    disk.nextLaunch();
    EXPECT_EQ(disk.store().read<double>("volume"), 0.5);
    EXPECT_EQ(disk.store().read<std::string>("language"), "en");
}

TEST_F(UnwritableStore, StaysInMemoryWhereNoFolderCanBeMade) {
    write(disk.folder() / "file", "in the way");
    SqliteDefaultsStore store(disk.folder() / "file" / "velmora" / "settings.sqlite");
    std::vector<StoreProblem> problems;
    store.setProblemListener([&](const StoreProblem& problem) { problems.push_back(problem); });

    EXPECT_NE(store.set("volume", 0.5), statusOk);

    EXPECT_EQ(store.read<double>("volume"), 0.5);
    ASSERT_EQ(problems.size(), 1U);
    EXPECT_EQ(problems[0].kind, Kind::unwritable);
}

TEST_F(UnwritableStore, TellsAFullDiskAsSuch) {
    disk.refuseWrites();
    disk.store().set("volume", 0.5);
    disk.store().set("volume", 0.6);

    expectToldOnce(Kind::full);
    disk.allowWrites();
}

TEST_F(UnwritableStore, TellsADiskThatWasFullFromTheStart) {
    fs::remove(disk.path());
    {
        const NoSpace full;
        EXPECT_NE(disk.store().set("volume", 0.5), statusOk);
    }
    expectToldOnce(Kind::full);

    EXPECT_EQ(disk.store().set("language", std::string("en")), statusOk);

    disk.nextLaunch();
    EXPECT_EQ(disk.store().read<double>("volume"), 0.5);
}

TEST_F(UnwritableStore, WritesWhatItStillHoldsWhenTheProgramEnds) {
    disk.refuseWrites();
    disk.store().set("volume", 0.5);
    disk.allowWrites();

    disk.nextLaunch();

    EXPECT_EQ(disk.store().read<double>("volume"), 0.5);
}

TEST_F(UnwritableStore, KeepsTheOldValueWhenTheDiskStaysFullToTheEnd) {
    disk.refuseWrites();
    disk.store().set("volume", 0.5);
    disk.quit();
    disk.allowWrites();

    EXPECT_EQ(disk.store().read<double>("volume"), 0.25);
    expectToldOnce(Kind::full);
}

} // namespace
} // namespace velmora
