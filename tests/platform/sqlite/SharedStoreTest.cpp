// Two mixers with one settings file: in two sessions, or on two machines with one home.
#include "platform/sqlite/StoreFixture.h"

#include "platform/simulated/SimulatedMainQueue.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace velmora {
namespace {

using namespace std::chrono_literals;

using Kind = StoreProblem::Kind;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

class SharedStore : public testing::Test {
protected:
    SqliteDefaultsStore& first() { return disk.store(); }

    StoreOnDisk disk;
};

TEST_F(SharedStore, IsReadByTheSecondWhichSaysSoOnceAndWritesNothing) {
    first().set("volume", 0.5);
    const std::string file = contentOf(disk.path());
    const std::string log = contentOf(disk.log());

    SqliteDefaultsStore second(disk.path());
    int told = 0;
    const auto connection = second.problemsChanged().connect([&] { ++told; });
    EXPECT_EQ(second.read<double>("volume"), 0.5);
    EXPECT_NE(second.set("volume", 0.25), statusOk);
    EXPECT_NE(second.set("language", std::string("en")), statusOk);

    EXPECT_THAT(second.problems(), ElementsAre(Field(&StoreProblem::kind, Kind::inUse)));
    EXPECT_EQ(told, 0) << "it was told at the start";
    EXPECT_EQ(second.read<double>("volume"), 0.25);
    EXPECT_TRUE(contentOf(disk.path()) == file);
    EXPECT_TRUE(contentOf(disk.log()) == log);
    EXPECT_TRUE(disk.problems.empty());
}

TEST_F(SharedStore, IsWrittenByTheSecondAfterTheFirstHasGone) {
    first().set("volume", 0.5);
    {
        SqliteDefaultsStore second(disk.path());
        second.set("language", std::string("en"));
        disk.quit();

        EXPECT_EQ(second.set("appearance", std::string("dark")), statusOk);

        EXPECT_THAT(second.problems(), IsEmpty());
    }
    EXPECT_EQ(first().read<double>("volume"), 0.5);
    EXPECT_EQ(first().read<std::string>("language"), "en");
    EXPECT_EQ(first().read<std::string>("appearance"), "dark");
}

TEST_F(SharedStore, IsWrittenByTheSecondByItselfAndNothingIsToldAnyMore) {
    first().set("volume", 0.5);
    SimulatedMainQueue queue;
    {
        SqliteDefaultsStore second(disk.path(), {.mainQueue = &queue});
        int told = 0;
        const auto connection = second.problemsChanged().connect([&] { ++told; });
        second.set("language", std::string("en"));
        queue.advance(1min);
        EXPECT_EQ(told, 0);
        EXPECT_THAT(second.problems(), ElementsAre(Field(&StoreProblem::kind, Kind::inUse)));

        disk.quit();
        queue.advance(1min);

        EXPECT_EQ(told, 1);
        EXPECT_THAT(second.problems(), IsEmpty());
        EXPECT_EQ(queue.timerCount(), 0U);
    }
    EXPECT_EQ(first().read<std::string>("language"), "en");
}

TEST_F(SharedStore, KeepsWhatTheFirstHasChangedSinceTheSecondRead) {
    first().set("presets", 1.0);
    {
        SqliteDefaultsStore second(disk.path());
        first().set("presets", 2.0);
        disk.quit();
        EXPECT_EQ(second.set("presets", 3.0), statusOk);
        EXPECT_THAT(second.problems(), ElementsAre(Field(&StoreProblem::kind, Kind::keptApart)));
    }
    EXPECT_EQ(first().read<double>("presets"), 2.0);
    EXPECT_EQ(first().read<double>("presets.unsaved"), 3.0);
}

TEST_F(SharedStore, IsReadWholeWhileTheFirstWrites) {
    const pid_t writer = fork();
    if (writer == 0) {
        SqliteDefaultsStore store(disk.path());
        for (double number = 0;; ++number) {
            store.set("one", NumberMap{{"number", number}});
            store.set("text", std::string(10'000, 'x'));
            store.set("text", std::string(20'000, 'y'));
        }
    }
    while (!fs::exists(disk.log()) || fs::file_size(disk.log()) < 100'000) {
    }
    for (int round = 0; round < 50; ++round) {
        const SqliteDefaultsStore reader(disk.path());
        EXPECT_TRUE(reader.read<NumberMap>("one")) << round;
        EXPECT_TRUE(reader.read<std::string>("text")) << round;
        EXPECT_THAT(reader.problems(), ElementsAre(Field(&StoreProblem::kind, Kind::inUse)));
    }
    kill(writer, SIGKILL);
    waitpid(writer, nullptr, 0);
}

TEST_F(SharedStore, LosesNothingWhenTwoBeginItAtOnce) {
    constexpr int rounds = 20;
    for (int round = 0; round < rounds; ++round) {
        disk.quit();
        fs::remove_all(disk.path().parent_path());
        std::vector<pid_t> launches;
        for (const char* key : {"first", "second"}) {
            const pid_t launch = fork();
            if (launch == 0) {
                bool isWell = true;
                {
                    SqliteDefaultsStore store(disk.path());
                    while (store.set(key, 1.0) != statusOk) {
                        usleep(100);
                    }
                    isWell = std::ranges::all_of(store.problems(), [](const StoreProblem& problem) {
                        return problem.kind == Kind::keptApart; // the other's key is new to it
                    });
                }
                _exit(isWell ? 0 : 1);
            }
            launches.push_back(launch);
        }
        for (const pid_t launch : launches) {
            int status = -1;
            waitpid(launch, &status, 0);
            EXPECT_EQ(status, 0);
        }
        EXPECT_EQ(first().read<double>("first"), 1.0) << round;
        EXPECT_EQ(first().read<double>("second"), 1.0) << round;
    }
}

/// Another program, as one that looks into the file or saves it elsewhere, has it for a while.
class HeldStore : public testing::Test {
protected:
    HeldStore() { disk.mainQueue = &queue; }
    ~HeldStore() override { disk.quit(); }

    void hold() {
        ASSERT_EQ(sqlite3_open(disk.path().c_str(), &other), SQLITE_OK);
        ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    }
    void letGo() { sqlite3_close(std::exchange(other, nullptr)); }

    SimulatedMainQueue queue;
    StoreOnDisk disk;
    sqlite3* other = nullptr;
};

TEST_F(HeldStore, IsWrittenOnceItIsFreeAndNothingWasTold) {
    disk.store().set("volume", 0.5);
    hold();
    EXPECT_NE(disk.store().set("volume", 0.25), statusOk);
    queue.advance(300ms);
    EXPECT_NE(disk.store().set("language", std::string("en")), statusOk);
    EXPECT_THAT(disk.store().problems(), IsEmpty());

    letGo();
    queue.advance(1s);

    EXPECT_THAT(disk.problems, IsEmpty());
    EXPECT_EQ(queue.timerCount(), 0U);
    disk.nextLaunch();
    EXPECT_EQ(disk.store().read<double>("volume"), 0.25);
    EXPECT_EQ(disk.store().read<std::string>("language"), "en");
}

TEST_F(HeldStore, IsToldWhenItLastsAndUntilItIsOver) {
    disk.store();
    hold();
    disk.store().set("volume", 0.25);
    queue.advance(10s);
    EXPECT_THAT(disk.store().problems(), ElementsAre(Field(&StoreProblem::kind, Kind::unwritable)));

    letGo();
    queue.advance(20s);

    EXPECT_THAT(disk.store().problems(), IsEmpty());
    disk.nextLaunch();
    EXPECT_EQ(disk.store().read<double>("volume"), 0.25);
}

TEST_F(HeldStore, IsReadAtTheStartAndWrittenLater) {
    disk.store().set("presets", 7.0);
    disk.quit();
    ASSERT_EQ(sqlite3_open(disk.path().c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other,
                           "PRAGMA locking_mode=EXCLUSIVE; BEGIN EXCLUSIVE; "
                           "CREATE TABLE t(a); DROP TABLE t; COMMIT",
                           nullptr,
                           nullptr,
                           nullptr),
              SQLITE_OK);

    EXPECT_EQ(disk.store().read<double>("presets"), 7.0);
    disk.store().set("presets", 8.0);
    letGo();
    queue.advance(1s);

    EXPECT_THAT(disk.problems, IsEmpty());
    disk.nextLaunch();
    EXPECT_EQ(disk.store().read<double>("presets"), 8.0);
}

} // namespace
} // namespace velmora
