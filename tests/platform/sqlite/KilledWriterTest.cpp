#include "platform/sqlite/NumberedWrites.h"
#include "platform/sqlite/StoreFixture.h"
#include "support/AcknowledgingProgram.h"

#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>
#include <unistd.h>

namespace velmora {
namespace {

using Settings = std::map<std::string, DefaultsValue>;

/// What the store holds after the numbers up to and including `last`.
Settings expectedAfter(std::uint64_t last) {
    Settings expected;
    for (std::uint64_t number = last + 1 - numberedKeys.size(); number <= last; ++number) {
        expected.insert(numberedWrite(number));
    }
    return expected;
}

Settings storedIn(const DefaultsStore& store) {
    Settings stored;
    for (const char* key : numberedKeys) {
        if (auto value = store.get(key)) {
            stored.emplace(key, std::move(*value));
        }
    }
    return stored;
}

TEST(KilledWriter, LosesNoAcknowledgedWriteAtFiveHundredMoments) {
    constexpr int kills = 500;
    StoreOnDisk disk;
    // A writer killed while it looks at what an earlier one left leaves its copy behind.
    setenv("TMPDIR", disk.folder().c_str(), /*overwrite=*/1);
    std::minstd_rand random(20250314);
    std::uint64_t last = 0;

    for (int round = 0; round < kills; ++round) {
        // Writes 1, 2, 3, … into the store and acknowledges each.
        support::AcknowledgingProgram writer(
            {VELMORA_STORE_WRITER, disk.path(), std::to_string(last + 1)});
        // Every tenth is killed somewhere in its start, the others somewhere after so many writes.
        const auto writes = round % 10 == 0 ? 0 : 1 + random() % 1000;
        for (std::uint64_t written = 0; written < writes; ++written) {
            ASSERT_TRUE(writer.next());
        }
        // Spreads the kill over the steps of a start and of a write; no expectation hangs on it.
        usleep(static_cast<useconds_t>(random() % 2000));
        ASSERT_TRUE(writer.kill()) << "the writer ended by itself";
        last = writer.last().value_or(last);

        disk.nextLaunch();
        const auto stored = storedIn(disk.store());
        ASSERT_TRUE(disk.problems.empty()) << "kill " << round;
        if (last < numberedKeys.size()) {
            disk.quit();
            continue; // not every key has been written yet
        }
        // The write that was under way may have reached the file as well.
        ASSERT_TRUE(stored == expectedAfter(last) || stored == expectedAfter(last + 1))
            << "kill " << round << " after " << last;
        disk.quit();
    }
    EXPECT_GT(last, 10'000U);
}

} // namespace
} // namespace velmora
