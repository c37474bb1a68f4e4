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

    EXPECT_TRUE(disk.store().problems().empty());
    disk.nextLaunch();
    EXPECT_EQ(disk.store().read<double>("volume"), 0.5);
    EXPECT_EQ(disk.store().read<std::string>("language"), "en");
}

TEST_F(UnwritableStore, StaysInMemoryWhereNoFolderCanBeMade) {
    write(disk.folder() / "file", "in the way");
    SqliteDefaultsStore store(disk.folder() / "file" / "velmora" / "settings.sqlite");
    EXPECT_NE(store.set("volume", 0.5), statusOk);

    EXPECT_EQ(store.read<double>("volume"), 0.5);
    ASSERT_EQ(store.problems().size(), 1U);
    EXPECT_EQ(store.problems()[0].kind, Kind::unwritable);
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

    EXPECT_TRUE(disk.store().problems().empty());
    disk.nextLaunch();
    EXPECT_EQ(disk.store().read<double>("volume"), 0.5);
}

TEST_F(UnwritableStore, ListsTwoKindsOfTroubleUntilBothAreOver) {
    const Unprivileged user(disk.folder());
    fs::permissions(folder(), fs::perms::owner_read | fs::perms::owner_exec);
    disk.store();
    fs::permissions(folder(), fs::perms::owner_all);
    disk.refuseWrites();
    disk.store().set("volume", 0.5);
    ASSERT_EQ(disk.store().problems().size(), 2U);
    EXPECT_EQ(disk.store().problems()[0].kind, Kind::unwritable);
    EXPECT_EQ(disk.store().problems()[1].kind, Kind::full);

    disk.allowWrites();
    disk.store().set("volume", 0.6);

    EXPECT_TRUE(disk.store().problems().empty());
}

// A row that the table refuses fails alone: SQLite itself undoes nothing then.
TEST_F(UnwritableStore, KeepsNothingOfAWriteThatFailedInTheMiddle) {
    disk.store();
    runSql(disk.path(),
           "CREATE TRIGGER refusal BEFORE INSERT ON defaults WHEN new.key='b' "
           "BEGIN SELECT RAISE(ABORT, 'refused'); END");
    EXPECT_NE(disk.store().set("b", 2.0), statusOk);
    EXPECT_NE(disk.store().set("a", 1.0), statusOk);

    runSql(disk.path(), "DROP TRIGGER refusal"); // fails while a transaction is open
    EXPECT_EQ(disk.store().set("c", 3.0), statusOk);

    EXPECT_TRUE(disk.store().problems().empty());
    disk.nextLaunch();
    for (const auto& [key, value] : NumberMap{{"a", 1.0}, {"b", 2.0}, {"c", 3.0}}) {
        EXPECT_EQ(disk.store().read<double>(key), value) << key;
    }
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
