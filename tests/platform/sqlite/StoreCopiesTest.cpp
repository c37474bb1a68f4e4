// A copy of every day on which something was written, and what becomes of it when the file is lost.
#include "platform/sqlite/StoreCopies.h"

#include "platform/sqlite/StoreFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using Kind = StoreProblem::Kind;
using testing::ElementsAre;
using testing::IsEmpty;

class StoreCopiesTest : public testing::Test {
protected:
    StoreCopiesTest() { setDay(14); }

    void setDay(unsigned day) {
        disk.now =
            std::chrono::sys_days{std::chrono::year{2025} / 3 / day} + std::chrono::hours{12};
    }
    [[nodiscard]] std::vector<std::string> days() const {
        std::vector<std::string> days;
        for (const auto& copy : StoreCopies(StoreFile(disk.path())).all()) {
            days.push_back(copy.day);
        }
        return days;
    }
    [[nodiscard]] fs::path copyOf(const std::string& day) const {
        return disk.path().parent_path() / ("settings-copy-" + day + ".sqlite");
    }
    static std::optional<double> volumeIn(const fs::path& file) {
        return SqliteDefaultsStore(file).read<double>("volume");
    }
    [[nodiscard]] std::vector<Kind> problems() {
        std::vector<Kind> kinds;
        for (const StoreProblem& problem : disk.store().problems()) {
            kinds.push_back(problem.kind);
        }
        return kinds;
    }

    StoreOnDisk disk;
};

TEST_F(StoreCopiesTest, HoldWhatTheFileHeldBeforeTheFirstWriteOfADay) {
    disk.store().set("volume", 0.25);
    EXPECT_THAT(days(), IsEmpty()) << "there was nothing to copy";

    setDay(15);
    EXPECT_THAT(days(), IsEmpty()) << "nothing was written yet";
    disk.store().set("volume", 0.5);
    disk.store().set("volume", 0.75);
    disk.nextLaunch();
    disk.store().set("volume", 1.0);

    EXPECT_THAT(days(), ElementsAre("2025-03-15"));
    EXPECT_EQ(volumeIn(copyOf("2025-03-15")), 0.25);
    EXPECT_EQ(fs::status(copyOf("2025-03-15")).permissions(),
              fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_FALSE(fs::exists(copyOf("2025-03-15").string() + "-part"));
}

TEST_F(StoreCopiesTest, AreKeptForSevenDays) {
    for (unsigned day = 1; day <= 10; ++day) {
        setDay(day);
        disk.store().set("volume", static_cast<double>(day));
    }

    EXPECT_THAT(days(),
                ElementsAre("2025-03-04",
                            "2025-03-05",
                            "2025-03-06",
                            "2025-03-07",
                            "2025-03-08",
                            "2025-03-09",
                            "2025-03-10"));
    EXPECT_EQ(volumeIn(copyOf("2025-03-10")), 9.0);
}

TEST_F(StoreCopiesTest, DoNotHinderAWriteWhereTheyAreRefused) {
    disk.store().set("volume", 0.25);
    setDay(15);
    fs::create_directories(copyOf("2025-03-15").string() + "-part/in the way");

    EXPECT_EQ(disk.store().set("volume", 0.5), statusOk);

    EXPECT_THAT(days(), IsEmpty());
    EXPECT_THAT(disk.problems, IsEmpty());
}

TEST_F(StoreCopiesTest, AreOfferedWhenTheFileIsGone) {
    disk.store().set("volume", 0.25);
    setDay(15);
    disk.store().set("volume", 0.5);
    disk.quit();
    fs::remove(disk.path());

    EXPECT_EQ(disk.store().get("volume"), std::nullopt);
    EXPECT_THAT(problems(), ElementsAre(Kind::gone, Kind::copyOffered));
    EXPECT_EQ(disk.store().problems()[1].setAside, "2025-03-15");

    EXPECT_EQ(disk.store().takeOfferedCopy(), statusOk);

    EXPECT_THAT(problems(), ElementsAre(Kind::gone, Kind::copyTaken));
    EXPECT_NE(disk.store().takeOfferedCopy(), statusOk) << "there is nothing left to take";
    disk.nextLaunch();
    EXPECT_EQ(disk.store().read<double>("volume"), 0.25);
    EXPECT_THAT(problems(), IsEmpty());
}

TEST_F(StoreCopiesTest, AreOfferedWhenTheFileIsEmpty) {
    disk.store().set("volume", 0.25);
    setDay(15);
    disk.store().set("volume", 0.5);
    disk.quit();
    fs::resize_file(disk.path(), 0);

    disk.store();

    EXPECT_THAT(problems(), ElementsAre(Kind::gone, Kind::copyOffered));
}

TEST_F(StoreCopiesTest, AreOfferedWhenTheFileIsDamagedAndReplaceWhatWasKeptOfIt) {
    disk.store().set("presets", Bytes(5000, 'g'));
    setDay(15);
    disk.store().set("volume", 0.5);
    disk.quit();
    write(disk.path(), "damage");
    EXPECT_THAT(problems(), ElementsAre(Kind::damaged, Kind::copyOffered));
    disk.store().set("presets", Bytes(100, 's'));

    int told = 0;
    const auto connection = disk.store().problemsChanged().connect([&] { ++told; });
    EXPECT_EQ(disk.store().takeOfferedCopy(), statusOk);
    EXPECT_EQ(told, 1);

    // The program has built upon other presets: what it goes on to save does not replace these.
    disk.store().set("presets", Bytes(200, 's'));
    disk.nextLaunch();
    EXPECT_EQ(disk.store().read<Bytes>("presets"), Bytes(5000, 'g'));
    EXPECT_EQ(disk.store().read<Bytes>("presets.unsaved"), Bytes(200, 's'));
    const SqliteDefaultsStore replaced(disk.path().parent_path() /
                                       "settings-replaced-2025-03-15.sqlite");
    EXPECT_EQ(replaced.read<Bytes>("presets"), Bytes(100, 's'));
}

TEST_F(StoreCopiesTest, StayOfferedWhereTheyCannotBeTaken) {
    disk.store().set("volume", 0.25);
    setDay(15);
    disk.store().set("volume", 0.5);
    disk.quit();
    fs::remove(disk.path());
    disk.refuseWrites();

    EXPECT_NE(disk.store().takeOfferedCopy(), statusOk);

    EXPECT_THAT(problems(), ElementsAre(Kind::gone, Kind::copyOffered, Kind::full));
    disk.allowWrites();
    EXPECT_EQ(disk.store().takeOfferedCopy(), statusOk);
    disk.nextLaunch();
    EXPECT_EQ(disk.store().read<double>("volume"), 0.25);
}

TEST_F(StoreCopiesTest, AreNotOfferedToAFirstLaunch) {
    disk.store();

    EXPECT_THAT(problems(), IsEmpty());
    EXPECT_NE(disk.store().takeOfferedCopy(), statusOk);
}

} // namespace
} // namespace velmora
