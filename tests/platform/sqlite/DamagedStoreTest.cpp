#include "platform/sqlite/StoreFixture.h"

#include <gtest/gtest.h>
#include <random>

namespace velmora {
namespace {

using Kind = StoreProblem::Kind;

// A file that cannot be trusted keeps its bytes under another name, and the user is told.
class DamagedStore : public testing::Test {
protected:
    /// A file of several pages, as a program that has ended leaves it.
    std::string wholeFile() {
        for (int key = 0; key < 300; ++key) {
            disk.store().set("key" + std::to_string(key), std::string(100, 'v'));
        }
        disk.quit();
        return contentOf(disk.path());
    }

    /// Opens the file with this content and expects it to be set aside, once and whole, and at
    /// least `carriedOver` of its settings to be in the new one.
    void expectSetAside(const std::string& damaged, int carriedOver = 0) {
        write(disk.path(), damaged);

        disk.store().set("volume", 0.5);

        ASSERT_EQ(disk.problems.size(), 1U);
        EXPECT_EQ(disk.problems[0].kind, Kind::damaged);
        EXPECT_EQ(disk.problems[0].file, disk.path());
        EXPECT_TRUE(contentOf(disk.problems[0].setAside) == damaged);
        EXPECT_GE(settings(), carriedOver);
        const int known = settings();

        disk.nextLaunch();
        EXPECT_EQ(disk.store().read<double>("volume"), 0.5);
        EXPECT_EQ(settings(), known);
        EXPECT_EQ(disk.problems.size(), 1U);
    }

    /// How many of those in `wholeFile` are there.
    int settings() {
        int count = 0;
        for (int key = 0; key < 300; ++key) {
            const auto value = disk.store().get("key" + std::to_string(key));
            EXPECT_TRUE(!value || *value == DefaultsValue(std::string(100, 'v'))) << key;
            count += value ? 1 : 0;
        }
        return count;
    }

    static constexpr std::size_t pageBytes = 4096;
    StoreOnDisk disk;
};

TEST_F(DamagedStore, IsSetAsideWhenItIsText) {
    expectSetAside("volume=0.5\n");
}

TEST_F(DamagedStore, IsSetAsideWhenItIsNoise) {
    std::mt19937 random(1);
    std::string noise(3 * pageBytes, '\0');
    for (char& byte : noise) {
        byte = static_cast<char>(random());
    }
    expectSetAside(noise);
}

TEST_F(DamagedStore, IsSetAsideWhenItIsCutOffInAPage) {
    expectSetAside(wholeFile().substr(0, 3 * pageBytes + 1000), 20);
}

TEST_F(DamagedStore, IsSetAsideWhenItIsCutOffInTheHeader) {
    expectSetAside(wholeFile().substr(0, 50));
}

TEST_F(DamagedStore, IsSetAsideWhenAPageBehindAGoodHeaderIsOverwritten) {
    std::string file = wholeFile();
    file.replace(3 * pageBytes, pageBytes, pageBytes, '\xA5');
    expectSetAside(file, 250);
}

TEST_F(DamagedStore, IsSetAsideWhenItsHeaderForbidsWriting) {
    std::string file = wholeFile();
    file[18] = '\xA2'; // the format that a writer must know: 1 or 2
    expectSetAside(file, 300);
}

TEST_F(DamagedStore, IsSetAsideWhenItIsAnotherProgramsDatabase) {
    runSql(disk.path(), "CREATE TABLE defaults(id INTEGER); PRAGMA user_version=1");
    expectSetAside(contentOf(disk.path()));
}

TEST_F(DamagedStore, IsSetAsideWhenItIsEmptyBesideItsLog) {
    runSql(disk.path(), "PRAGMA journal_mode=WAL; CREATE TABLE t(a)", true);
    const std::string log = contentOf(disk.log());
    fs::resize_file(disk.path(), 0);

    disk.store();

    ASSERT_EQ(disk.problems.size(), 1U);
    EXPECT_TRUE(contentOf(disk.problems[0].setAside + "-wal") == log);
}

TEST_F(DamagedStore, IsNamedAfterTheDayAndNeverOverAnEarlierOne) {
    disk.now = std::chrono::sys_days{std::chrono::year{2025} / 3 / 14} + std::chrono::hours{12};
    for (const char* damage : {"first", "second", "third"}) {
        disk.quit();
        write(disk.path(), damage);
        disk.store();
    }

    const fs::path folder = disk.path().parent_path();
    EXPECT_EQ(contentOf(folder / "settings-damaged-2025-03-14.sqlite"), "first");
    EXPECT_EQ(contentOf(folder / "settings-damaged-2025-03-14-2.sqlite"), "second");
    EXPECT_EQ(contentOf(folder / "settings-damaged-2025-03-14-3.sqlite"), "third");
    EXPECT_EQ(disk.problems.size(), 3U);
}

TEST_F(DamagedStore, LosesNothingWhenTheDamageComesWhileTheProgramRuns) {
    // More than SQLite keeps in memory (2 MB), so that it has to read the damaged pages.
    const std::string large(20'000, 'v');
    for (int key = 0; key < 200; ++key) {
        disk.store().set("key" + std::to_string(key), large);
    }
    disk.nextLaunch();
    disk.store();
    std::string file = contentOf(disk.path());
    file.replace(pageBytes, std::string::npos, file.size() - pageBytes, '\xFF');
    std::fstream(disk.path(), std::ios::binary | std::ios::in | std::ios::out) << file;

    for (int key = 0; key < 200; key += 2) {
        EXPECT_EQ(disk.store().set("key" + std::to_string(key), 1.0), statusOk);
    }

    ASSERT_EQ(disk.problems.size(), 1U);
    EXPECT_EQ(disk.problems[0].kind, Kind::damaged);
    EXPECT_TRUE(contentOf(disk.problems[0].setAside) == file);
    disk.nextLaunch();
    for (int key = 0; key < 200; ++key) {
        EXPECT_EQ(disk.store().get("key" + std::to_string(key)),
                  key % 2 == 0 ? DefaultsValue(1.0) : DefaultsValue(large));
    }
    EXPECT_EQ(disk.problems.size(), 1U);
}

TEST_F(DamagedStore, KeepsItsLogToo) {
    // More than SQLite keeps in memory (2 MB), so that it has to read the damaged pages.
    const std::string large(20'000, 'v');
    for (int key = 0; key < 200; ++key) {
        disk.store().set("key" + std::to_string(key), large);
    }
    disk.nextLaunch();
    disk.store().set("volume", 0.5);
    std::string file = contentOf(disk.path());
    file.replace(pageBytes, std::string::npos, file.size() - pageBytes, '\xFF');
    std::fstream(disk.path(), std::ios::binary | std::ios::in | std::ios::out) << file;
    std::string log;

    for (int key = 0; key < 200 && disk.problems.empty(); key += 2) {
        log = contentOf(disk.log());
        disk.store().set("key" + std::to_string(key), 1.0);
    }

    ASSERT_EQ(disk.problems.size(), 1U);
    EXPECT_FALSE(log.empty());
    EXPECT_TRUE(contentOf(disk.problems[0].setAside) == file);
    EXPECT_TRUE(contentOf(disk.problems[0].setAside + "-wal") == log);
}

TEST_F(DamagedStore, IsListedUntilTheProgramEnds) {
    write(disk.path(), "damage");
    EXPECT_EQ(disk.store().set("volume", 0.5), statusOk);
    disk.refuseWrites();
    disk.store().set("volume", 0.6);
    EXPECT_EQ(disk.store().problems().size(), 2U);
    disk.allowWrites();

    EXPECT_EQ(disk.store().set("volume", 0.7), statusOk);

    ASSERT_EQ(disk.store().problems().size(), 1U);
    EXPECT_EQ(disk.store().problems()[0].kind, Kind::damaged);
    disk.nextLaunch();
    EXPECT_TRUE(disk.store().problems().empty());
}

// A later version may have given its rows another meaning: they are read, and nothing is written.
class NewerStore : public testing::Test {
protected:
    std::map<fs::path, std::string> everyFile() {
        std::map<fs::path, std::string> files;
        for (const auto& entry : fs::directory_iterator(disk.path().parent_path())) {
            files[entry.path()] = contentOf(entry.path());
        }
        return files;
    }

    void expectRefusedUntouched() {
        const auto before = everyFile();
        const auto writtenBefore = fs::last_write_time(disk.path());

        EXPECT_NE(disk.store().set("volume", 0.5), statusOk);
        EXPECT_NE(disk.store().set("volume", 0.6), statusOk);
        EXPECT_EQ(disk.store().read<double>("volume"), 0.6);
        EXPECT_TRUE(everyFile() == before);
        disk.quit();

        EXPECT_TRUE(everyFile() == before);
        EXPECT_EQ(fs::last_write_time(disk.path()), writtenBefore);
        ASSERT_EQ(disk.problems.size(), 1U);
        EXPECT_EQ(disk.problems[0].kind, Kind::newer);
    }

    StoreOnDisk disk;
};

TEST_F(NewerStore, IsReadAsFarAsItCanBe) {
    disk.store().set("volume", 0.4);
    disk.store().set("presets", Bytes(5000, 7));
    disk.quit();
    runSql(disk.path(),
           "CREATE TABLE more(a); INSERT INTO defaults VALUES('future', 99, x'01'); "
           "PRAGMA user_version=2");

    const auto before = everyFile();

    EXPECT_EQ(disk.store().read<double>("volume"), 0.4);
    EXPECT_EQ(disk.store().read<Bytes>("presets"), Bytes(5000, 7));
    EXPECT_EQ(disk.store().get("future"), std::nullopt);
    EXPECT_TRUE(everyFile() == before);
}

TEST_F(NewerStore, IsRefusedWithoutTouchingIt) {
    runSql(disk.path(), "PRAGMA journal_mode=WAL; CREATE TABLE t(a); PRAGMA user_version=2");

    expectRefusedUntouched();
}

TEST_F(NewerStore, IsRefusedWithoutTouchingItsLogWhenOnlyThatSaysSo) {
    disk.store().set("volume", 0.4);
    disk.quit();
    runSql(disk.path(), "CREATE TABLE t(a); PRAGMA user_version=2", true);
    fs::remove(disk.path().string() + "-shm");
    ASSERT_GT(fs::file_size(disk.log()), 0U);

    expectRefusedUntouched();
}

} // namespace
} // namespace velmora
