#include "platform/sqlite/KeptText.h"

#include "platform/sqlite/SqliteDefaultsStore.h"
#include "support/TemporaryFolder.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace velmora {
namespace {

class KeptTextTest : public testing::Test {
protected:
    std::ptrdiff_t files() const {
        return std::distance(std::filesystem::directory_iterator(folder.path()), {});
    }

    support::TemporaryFolder folder{"velmora?kept#text%"};
    std::filesystem::path file = folder.path() / "settings.sqlite";
};

TEST_F(KeptTextTest, ReadsWhatAClosedStoreHolds) {
    SqliteDefaultsStore(file).set("language", std::string("en"));
    const auto before = files();

    EXPECT_EQ(keptText(file, "language"), "en");
    EXPECT_EQ(keptText(file, "appearance"), std::nullopt);
    EXPECT_EQ(files(), before);
}

TEST_F(KeptTextTest, ReadsWhatAnOpenStoreHasJustWritten) {
    SqliteDefaultsStore store(file);
    store.set("language", std::string("fr"));
    store.set("language", std::string("en"));

    EXPECT_EQ(keptText(file, "language"), "en");
}

TEST_F(KeptTextTest, ReadsNoOtherKindOfValue) {
    SqliteDefaultsStore(file).set("language", 1.0);

    EXPECT_EQ(keptText(file, "language"), std::nullopt);
}

TEST_F(KeptTextTest, FindsNothingWhereThereIsNoStore) {
    EXPECT_EQ(keptText(file, "language"), std::nullopt);
    EXPECT_EQ(files(), 0);
    std::ofstream(file) << "this is no database, and long enough to be looked at as one";
    EXPECT_EQ(keptText(file, "language"), std::nullopt);
    EXPECT_EQ(files(), 1);
}

} // namespace
} // namespace velmora
