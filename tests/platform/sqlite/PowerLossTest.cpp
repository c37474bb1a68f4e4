// The power goes, or the disk is full, at every step that the store's files take to the disk.
#include "platform/simulated/SimulatedMainQueue.h"
#include "platform/sqlite/FaultyDisk.h"
#include "platform/sqlite/StoreFixture.h"

#include <chrono>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

namespace velmora {
namespace {

using namespace std::chrono_literals;
using testing::IsEmpty;

/// A session: a fader is moved between saves of presets, and the clock goes on.
class Scenario {
public:
    static constexpr int saves = 6;

    explicit Scenario(StoreOnDisk& disk) : disk_(disk) {
        disk.mainQueue = &queue_;
        disk.syncedKeys = {"presets"};
    }

    void run() {
        for (int save = 1; save <= saves; ++save) {
            attemptedPresets = save;
            if (disk_.store().set("presets", presets(save)) == statusOk) {
                keptPresets = save;
                syncedVolume = keptVolume; // written before, in the same log
            }
            for (int move = 0; move < 5; ++move) {
                ++attemptedVolume;
                if (disk_.store().set("volume", static_cast<double>(attemptedVolume)) == statusOk) {
                    keptVolume = attemptedVolume;
                }
            }
            if (save % 2 == 0) {
                queue_.advance(1s);
                syncedVolume = disk_.store().problems().empty() ? keptVolume : syncedVolume;
            }
        }
    }

    static Bytes presets(int save) {
        return Bytes(static_cast<std::size_t>(3000 * save), static_cast<std::uint8_t>(save));
    }

    // What the store has said is kept, and what it was last given.
    int keptPresets = 0;
    int attemptedPresets = 0;
    int keptVolume = 0;
    int syncedVolume = 0;
    int attemptedVolume = 0;

private:
    StoreOnDisk& disk_;
    SimulatedMainQueue queue_;
};

/// The save whose presets are stored; 0 without any, -1 for anything else.
int storedSave(const DefaultsStore& store) {
    const auto stored = store.read<Bytes>("presets");
    if (!stored) {
        return store.get("presets") ? -1 : 0;
    }
    const int save = stored->empty() ? -1 : stored->front();
    return save >= 1 && *stored == Scenario::presets(save) ? save : -1;
}

/// How many steps the scenario takes with nothing wrong.
std::uint64_t stepsOfAll() {
    FaultyDisk faulty;
    StoreOnDisk disk;
    Scenario scenario(disk);
    scenario.run();
    disk.quit();
    EXPECT_EQ(scenario.keptPresets, Scenario::saves);
    return faulty.steps();
}

TEST(PowerLoss, TakesNoPresetAndOfSettingsOnlyTheLastSecondAtWhateverStep) {
    const std::uint64_t steps = stepsOfAll();
    ASSERT_GT(steps, 50U);
    std::minstd_rand random{20250314};
    constexpr int trials = 2; // of what is left of the same steps
    for (std::uint64_t step = 0; step <= steps; ++step) {
        for (int trial = 0; trial < trials; ++trial) {
            SCOPED_TRACE("step " + std::to_string(step) + ", trial " + std::to_string(trial));
            FaultyDisk faulty;
            StoreOnDisk disk;
            Scenario scenario(disk);
            faulty.powerlessFrom = step;
            scenario.run();
            disk.quit();
            faulty.leaveWhatWasSynchronised(random);
            faulty.powerlessFrom.reset();
            disk.problems.clear();

            const int save = storedSave(disk.store());
            const auto volume = disk.store().read<double>("volume").value_or(0.0);

            ASSERT_THAT(disk.problems, IsEmpty());
            ASSERT_GE(save, scenario.keptPresets);
            ASSERT_LE(save, scenario.attemptedPresets);
            ASSERT_GE(volume, scenario.syncedVolume);
            ASSERT_LE(volume, scenario.attemptedVolume);
            ASSERT_EQ(disk.store().set("after", 1.0), statusOk);
            disk.quit();
        }
    }
}

TEST(FullDisk, LosesNothingThatWasKeptAtWhateverStepAndNothingOnceThereIsSpace) {
    const std::uint64_t steps = stepsOfAll();
    for (std::uint64_t step = 0; step <= steps; ++step) {
        for (const bool isFreedInTime : {false, true}) {
            SCOPED_TRACE("step " + std::to_string(step));
            FaultyDisk faulty;
            StoreOnDisk disk;
            Scenario scenario(disk);
            faulty.fullFrom = step;
            scenario.run();
            if (isFreedInTime) {
                faulty.fullFrom.reset();
                ASSERT_EQ(disk.store().set("more", 1.0), statusOk);
                ASSERT_THAT(disk.store().problems(), IsEmpty());
            }
            disk.quit();
            faulty.fullFrom.reset();

            const int save = storedSave(disk.store());
            const auto volume = disk.store().read<double>("volume").value_or(0.0);

            ASSERT_THAT(disk.store().problems(), IsEmpty());
            ASSERT_GE(save, isFreedInTime ? Scenario::saves : scenario.keptPresets);
            ASSERT_GE(volume, isFreedInTime ? scenario.attemptedVolume : scenario.keptVolume);
            disk.quit();
        }
    }
}

} // namespace
} // namespace velmora
