// Rows that can still be read move into the new file: one bad page does not cost every preset.
#include "platform/sqlite/StoreFixture.h"
#include "platform/sqlite/StoreSalvage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using Kind = StoreProblem::Kind;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

class SalvagedStore : public testing::Test {
protected:
    /// A long-used file: presets over several pages, a row of every type, and so many of them that
    /// they have pages of their own.
    void fill() {
        disk.store().set("presets", presets);
        disk.store().set("muted", true);
        disk.store().set("open", false);
        disk.store().set("volume", 0.25);
        disk.store().set("sourceGains", NumberMap{{"dev-1", 0.5}});
        for (int key = 0; key < keys; ++key) {
            disk.store().set("key" + std::to_string(key), std::string(100, 'v'));
        }
    }
    std::string closedFile() {
        fill();
        disk.quit();
        return contentOf(disk.path());
    }
    [[nodiscard]] int keysFound() {
        int found = 0;
        for (int key = 0; key < keys; ++key) {
            found += disk.store().get("key" + std::to_string(key)) ? 1 : 0;
        }
        return found;
    }
    void damagePage(std::string& file, std::size_t number) const {
        file.replace((number - 1) * pageBytes, pageBytes, pageBytes, '\xA5');
    }

    static constexpr std::size_t pageBytes = 4096;
    static constexpr int keys = 200;
    const Bytes presets = Bytes(30'000, 'p');
    StoreOnDisk disk;
};

TEST_F(SalvagedStore, KeepsItsPresetsWhicheverOtherPageIsBad) {
    const std::string whole = closedFile();
    int lostPresets = 0;
    for (std::size_t page = 1; page <= whole.size() / pageBytes; ++page) {
        SCOPED_TRACE("page " + std::to_string(page));
        std::string file = whole;
        damagePage(file, page);
        const bool holdsPresets =
            whole.substr((page - 1) * pageBytes, pageBytes).find("pppp") != std::string::npos;
        disk.quit();
        write(disk.path(), file);

        const auto found = disk.store().read<Bytes>("presets");

        EXPECT_TRUE(holdsPresets || found == presets);
        lostPresets += found == presets ? 0 : 1;
        EXPECT_GE(keysFound(), keys - 40);
    }
    EXPECT_LE(lostPresets, 9); // 30 kB
}

TEST_F(SalvagedStore, KeepsARowOfEachTypeWithoutItsFirstPages) {
    std::string file = closedFile();
    damagePage(file, 1);
    write(disk.path(), file);

    EXPECT_EQ(disk.store().read<Bytes>("presets"), presets);
    EXPECT_EQ(disk.store().read<bool>("muted"), true);
    EXPECT_EQ(disk.store().read<bool>("open"), false);
    EXPECT_EQ(disk.store().read<double>("volume"), 0.25);
    EXPECT_EQ(disk.store().read<NumberMap>("sourceGains"), (NumberMap{{"dev-1", 0.5}}));
    EXPECT_EQ(keysFound(), keys);
}

TEST_F(SalvagedStore, KeepsWhatOnlyItsLogHolds) {
    fill();
    const std::string log = contentOf(disk.log());
    disk.quit();
    write(disk.path(), ""); // cut off
    write(disk.log(), log);

    EXPECT_EQ(disk.store().read<Bytes>("presets"), presets);
    EXPECT_EQ(keysFound(), keys);
    EXPECT_THAT(disk.store().problems(), ElementsAre(Field(&StoreProblem::kind, Kind::damaged)));
}

TEST_F(SalvagedStore, KeepsNothingOfALogBehindItsFirstBadByte) {
    disk.store().set("volume", 0.25);
    const std::size_t good = contentOf(disk.log()).size();
    disk.store().set("volume", 0.75);
    std::string log = contentOf(disk.log());
    log[good + 100] ^= 1;
    disk.quit();
    write(disk.path(), "");
    write(disk.log(), log);

    EXPECT_EQ(disk.store().read<double>("volume"), 0.25);
}

TEST_F(SalvagedStore, DoesNotBringRemovedRowsBack) {
    closedFile();
    for (int key = 0; key < keys; ++key) {
        disk.store().remove("key" + std::to_string(key));
    }
    disk.quit();
    std::string file = contentOf(disk.path());
    const auto row = file.find("sourceGains");
    ASSERT_NE(row, std::string::npos);
    // Only the page that SQLite goes through first is bad, and its list of free pages is not.
    damagePage(file, 2);
    write(disk.path(), file);

    disk.store();

    EXPECT_EQ(keysFound(), 0);
}

TEST_F(SalvagedStore, StaysAsItWasUntilTheNewFileIsWhole) {
    std::string file = closedFile();
    damagePage(file, 1);
    write(disk.path(), file);
    {
        const NoSpace full;
        EXPECT_EQ(disk.store().read<double>("volume"), 0.25);
        EXPECT_THAT(disk.store().problems(), ElementsAre(Field(&StoreProblem::kind, Kind::full)));
        EXPECT_TRUE(contentOf(disk.path()) == file);
    }

    EXPECT_EQ(disk.store().set("volume", 0.5), statusOk);

    EXPECT_THAT(disk.store().problems(), ElementsAre(Field(&StoreProblem::kind, Kind::damaged)));
    disk.nextLaunch();
    EXPECT_EQ(disk.store().read<Bytes>("presets"), presets);
    EXPECT_EQ(disk.store().read<double>("volume"), 0.5);
}

TEST_F(SalvagedStore, IsReplacedByTheNewFileThatAKillLeftBesideIt) {
    closedFile();
    fs::rename(disk.path(), disk.path().string() + "-new");

    EXPECT_EQ(disk.store().read<Bytes>("presets"), presets);
    EXPECT_THAT(disk.problems, IsEmpty());
}

TEST_F(SalvagedStore, KeepsRowsThatThisProgramDoesNotUnderstand) {
    disk.store().set("volume", 0.25);
    disk.quit();
    runSql(disk.path(), "INSERT INTO defaults VALUES('future', 99, x'01')");
    std::string file = contentOf(disk.path());
    file[18] = '\xA2'; // forbids writing
    write(disk.path(), file);

    disk.store();
    disk.quit();

    const auto rows = salvageRows(StoreFile(disk.path()));
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].key, "future");
    EXPECT_EQ(rows[0].type, 99);
}

} // namespace
} // namespace velmora
