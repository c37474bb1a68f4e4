#include "durability/Change.h"

#include "platform/sqlite/Database.h"
#include "platform/sqlite/StoreFixture.h"
#include "support/AcknowledgingProgram.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>
#include <unistd.h>

namespace velmora {
namespace {

/// What SQLite finds wrong with the file: "ok" when nothing.
std::string integrityOf(const fs::path& file) {
    auto database = Database::open(file);
    return database ? database->queryText("PRAGMA integrity_check").value_or("cannot be read")
                    : "cannot be opened";
}

/// Gives `copy` the file and its log as a kill has left them.
void copyStore(const StoreOnDisk& disk, StoreOnDisk& copy) {
    copy.quit();
    fs::create_directories(copy.path().parent_path());
    fs::copy_file(disk.path(), copy.path(), fs::copy_options::overwrite_existing);
    if (fs::exists(disk.log())) {
        fs::copy_file(disk.log(), copy.log(), fs::copy_options::overwrite_existing);
    }
}

class KilledMixer : public testing::Test {
protected:
    KilledMixer() {
        // A program killed while it looks at what an earlier one left leaves its copy behind.
        // NOLINTNEXTLINE(concurrency-mt-unsafe): one thread here
        setenv("TMPDIR", disk.folder().c_str(), /*overwrite=*/1);
    }

    /// Takes the changes up to the last acknowledged one over into what must have been kept.
    /// Returns what the kill interrupted.
    Change follow(const std::optional<std::uint64_t>& acknowledged) {
        if (!acknowledged) {
            return Launch{};
        }
        predict(Launch{}, studio.sources(), kept);
        while (last < *acknowledged) {
            predict(randomChange(++last), studio.sources(), kept);
        }
        return randomChange(last + 1);
    }

    /// Everything that the next launch may find: of the interrupted change any number of writes,
    /// but in their order and each as a whole.
    [[nodiscard]] std::vector<KeptSettings> possibleAfter(const Change& interrupted) const {
        std::vector<KeptSettings> possible{kept};
        KeptSettings next = kept;
        predict(interrupted, studio.sources(), next, [&] { possible.push_back(next); });
        return possible;
    }

    Studio studio;
    StoreOnDisk disk;
    StoreOnDisk copy;
    std::minstd_rand random{20250314};
    KeptSettings kept;
    std::uint64_t last = 0;
};

TEST_F(KilledMixer, LosesNoAcknowledgedChangeAtFiveHundredMoments) {
    constexpr int kills = 500;
    int launchesWithPresets = 0;
    for (int round = 0; round < kills; ++round) {
        SCOPED_TRACE("kill " + std::to_string(round) + " after change " + std::to_string(last));
        support::AcknowledgingProgram changer(
            {VELMORA_SETTINGS_CHANGER, disk.path(), std::to_string(last)});
        // Every eighth is killed somewhere in its start, the others after so many changes. The
        // pauses spread the kill over the steps of a start and of a change; no expectation hangs
        // on them.
        const bool inItsStart = round % 8 == 0;
        for (auto changes = inItsStart ? 0 : 1 + random() % 150; changes > 0; --changes) {
            ASSERT_TRUE(changer.next());
        }
        usleep(static_cast<useconds_t>(random() % (inItsStart ? 25'000 : 1000)));
        ASSERT_TRUE(changer.kill()) << "the program ended by itself";
        const auto possible = possibleAfter(follow(changer.last()));

        // Every second look is at a copy, so that the next program finds the file as the kill left
        // it.
        StoreOnDisk& looked = round % 2 == 0 ? disk : copy;
        if (&looked == &copy && fs::exists(disk.path())) {
            copyStore(disk, copy);
        }
        kept = Mixer(studio, looked.store()).kept();

        ASSERT_TRUE(looked.problems.empty());
        ASSERT_EQ(integrityOf(looked.path()), "ok");
        ASSERT_NE(std::ranges::find(possible, kept), possible.end());
        looked.quit();
        launchesWithPresets += kept.presets.empty() ? 0 : 1;
    }
    EXPECT_GT(last, 10'000U);
    EXPECT_GT(launchesWithPresets, kills / 2);
}

} // namespace
} // namespace velmora
