// A file that could not be read at the start, and can be while the program runs.
#include "platform/sqlite/StoreFixture.h"
#include "platform/sqlite/Unprivileged.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using Kind = StoreProblem::Kind;
using testing::Contains;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

class UnreadStore : public testing::Test {
protected:
    /// An earlier launch kept presets, and a later one cannot read them.
    void SetUp() override {
        disk.store().set("presets", kept);
        disk.store().set("volume", 0.25);
        disk.quit();
    }
    void TearDown() override { fs::permissions(disk.path(), readAndWrite); }

    void forbidReading() { fs::permissions(disk.path(), fs::perms::none); }
    void allowReading() { fs::permissions(disk.path(), readAndWrite); }

    static constexpr fs::perms readAndWrite = fs::perms::owner_read | fs::perms::owner_write;
    const Bytes kept = Bytes(5000, 'k');
    const Bytes session = Bytes(100, 's');
    StoreOnDisk disk;
};

TEST_F(UnreadStore, KeepsWhatItHoldsAndWhatWasSetMeanwhileBesideIt) {
    const Unprivileged user(disk.folder());
    forbidReading();
    EXPECT_NE(disk.store().set("presets", session), statusOk);
    EXPECT_NE(disk.store().set("language", std::string("en")), statusOk);
    allowReading();

    EXPECT_EQ(disk.store().set("appearance", std::string("dark")), statusOk);

    EXPECT_THAT(disk.store().problems(), ElementsAre(Field(&StoreProblem::kind, Kind::keptApart)));
    EXPECT_EQ(disk.store().read<Bytes>("presets"), session) << "as the program has set it";
    disk.nextLaunch();
    EXPECT_EQ(disk.store().read<Bytes>("presets"), kept);
    EXPECT_EQ(disk.store().read<Bytes>("presets.unsaved"), session);
    EXPECT_EQ(disk.store().read<double>("volume"), 0.25);
    EXPECT_EQ(disk.store().read<std::string>("language"), "en");
    EXPECT_EQ(disk.store().read<std::string>("appearance"), "dark");
    EXPECT_THAT(disk.store().problems(), IsEmpty());
}

TEST_F(UnreadStore, IsNotOverwrittenByWhatIsSetAfterItCouldBeRead) {
    const Unprivileged user(disk.folder());
    forbidReading();
    disk.store().set("language", std::string("en"));
    allowReading();
    disk.store().set("language", std::string("fr"));

    EXPECT_EQ(disk.store().set("presets", session), statusOk);

    disk.nextLaunch();
    EXPECT_EQ(disk.store().read<Bytes>("presets"), kept);
    EXPECT_EQ(disk.store().read<Bytes>("presets.unsaved"), session);
}

TEST_F(UnreadStore, IsNotOverwrittenAsTheProgramEnds) {
    const Unprivileged user(disk.folder());
    forbidReading();
    disk.store().set("presets", session);
    allowReading();

    disk.nextLaunch();

    EXPECT_EQ(disk.store().read<Bytes>("presets"), kept);
    EXPECT_EQ(disk.store().read<Bytes>("presets.unsaved"), session);
}

} // namespace
} // namespace velmora
