#include "platform/sqlite/SqliteDefaultsStore.h"

#include "platform/sqlite/StoreFixture.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <set>

namespace velmora {
namespace {

class SqliteDefaultsStoreTest : public testing::Test {
protected:
    SqliteDefaultsStore& store() { return disk.store(); }

    static fs::perms modeOf(const fs::path& path) {
        return fs::status(path).permissions() & fs::perms::all;
    }

    StoreOnDisk disk;
};

TEST_F(SqliteDefaultsStoreTest, MakesAFolderAndFilesThatOnlyTheOwnerReads) {
    store().set("volume", 0.5);

    EXPECT_EQ(modeOf(disk.path().parent_path()), fs::perms::owner_all);
    EXPECT_EQ(modeOf(disk.path()), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(modeOf(disk.log()), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(SqliteDefaultsStoreTest, LeavesOneFileAndItsLockBehindAfterQuitting) {
    store().set("volume", 0.5);
    disk.quit();

    std::set<fs::path> names;
    for (const auto& entry : fs::directory_iterator(disk.path().parent_path())) {
        names.insert(entry.path().filename());
    }
    EXPECT_EQ(names, (std::set<fs::path>{"settings.sqlite", "settings.lock"}));
    EXPECT_TRUE(disk.problems.empty());
}

TEST_F(SqliteDefaultsStoreTest, WritesNothingWhenTheValueIsUnchanged) {
    store().set("gains", NumberMap{{"dev-1", 0.5}});
    const std::string before = contentOf(disk.log());

    EXPECT_EQ(store().set("gains", NumberMap{{"dev-1", 0.5}}), statusOk);

    EXPECT_TRUE(contentOf(disk.log()) == before);
}

TEST_F(SqliteDefaultsStoreTest, WritesThroughALinkToTheFileItself) {
    const fs::path real = disk.folder() / "elsewhere" / "real.sqlite";
    write(real, "");
    fs::create_directories(disk.path().parent_path());
    fs::create_symlink(real, disk.path());

    store().set("volume", 0.5);
    disk.quit();

    EXPECT_TRUE(fs::is_symlink(disk.path()));
    EXPECT_EQ(store().read<double>("volume"), 0.5);
    EXPECT_GT(fs::file_size(real), 0U);
}

TEST_F(SqliteDefaultsStoreTest, LeavesRowsItCannotReadInTheFile) {
    store().set("volume", 0.5);
    disk.quit();
    runSql(disk.path(), "INSERT INTO defaults VALUES('future', 99, x'01'), ('broken', 2, x'0102')");

    EXPECT_EQ(store().get("future"), std::nullopt);
    EXPECT_EQ(store().get("broken"), std::nullopt);
    EXPECT_EQ(store().read<double>("volume"), 0.5);

    store().set("volume", 0.75);
    disk.quit();
    EXPECT_NO_THROW(runSql(disk.path(),
                           "INSERT INTO defaults SELECT 'seen', type, value "
                           "FROM defaults WHERE key='future' AND type=99"));
}

TEST_F(SqliteDefaultsStoreTest, SharesTheFileWithASecondInstanceWhereNothingCanBeLocked) {
    fs::create_directories(disk.path().parent_path() / "settings.lock");
    SqliteDefaultsStore second(disk.path());
    for (int round = 0; round < 100; ++round) {
        EXPECT_EQ(store().set("first", static_cast<double>(round)), statusOk);
        EXPECT_EQ(second.set("second", static_cast<double>(round)), statusOk);
    }

    disk.nextLaunch();

    EXPECT_EQ(store().read<double>("first"), 99.0);
    EXPECT_EQ(store().read<double>("second"), 99.0);
}

TEST_F(SqliteDefaultsStoreTest, LeavesTheRightsOfAFolderThatWasThere) {
    const fs::path folder = disk.path().parent_path();
    fs::create_directories(folder);
    fs::permissions(folder, fs::perms::owner_all | fs::perms::group_all);

    store().set("volume", 0.5);

    EXPECT_EQ(modeOf(folder), fs::perms::owner_all | fs::perms::group_all);
}

TEST_F(SqliteDefaultsStoreTest, IsGivenAFolderOfItsOwnersAlone) {
    const fs::path folder = disk.folder() / "new" / "velmora";
    EXPECT_EQ(makePrivateFolder(folder), statusOk);
    EXPECT_EQ(modeOf(folder), fs::perms::owner_all);
    EXPECT_EQ(modeOf(folder.parent_path()), fs::perms::owner_all);

    fs::permissions(folder, fs::perms::owner_all | fs::perms::group_read | fs::perms::others_exec);
    EXPECT_EQ(makePrivateFolder(folder), statusOk);
    EXPECT_EQ(modeOf(folder), fs::perms::owner_all);

    write(disk.folder() / "file", "in the way");
    EXPECT_NE(makePrivateFolder(disk.folder() / "file" / "velmora"), statusOk);
}

TEST(SqliteDefaultsStorePath, LiesInTheUsersDataFolder) {
    setenv("HOME", "/home/ada", 1);
    setenv("XDG_DATA_HOME", "/data", 1);
    EXPECT_EQ(SqliteDefaultsStore::defaultPath(), "/data/velmora/settings.sqlite");

    setenv("XDG_DATA_HOME", "relative", 1);
    EXPECT_EQ(SqliteDefaultsStore::defaultPath(), "/home/ada/.local/share/velmora/settings.sqlite");

    unsetenv("XDG_DATA_HOME");
    EXPECT_EQ(SqliteDefaultsStore::defaultPath(), "/home/ada/.local/share/velmora/settings.sqlite");
}

} // namespace
} // namespace velmora
