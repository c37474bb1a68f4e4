#include "platform/sqlite/StoreLock.h"

#include "platform/sqlite/StoreFixture.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velmora {
namespace {

using Outcome = StoreLock::Outcome;

class StoreLockTest : public testing::Test {
protected:
    support::TemporaryFolder folder{"velmora-lock"};
    fs::path file = folder.path() / "settings.lock";
};

TEST_F(StoreLockTest, HasOneHolderUntilThatIsGone) {
    std::optional<StoreLock> first(std::in_place, file);
    StoreLock second(file);

    EXPECT_EQ(first->take(), Outcome::held);
    EXPECT_EQ(first->take(), Outcome::held);
    EXPECT_EQ(second.take(), Outcome::isElsewhere);

    first.reset();
    EXPECT_EQ(second.take(), Outcome::held);
}

TEST_F(StoreLockTest, IsFreeOnceAProcessThatHeldItWasKilled) {
    const pid_t holder = fork();
    if (holder == 0) {
        StoreLock lock(file);
        _exit(lock.take() == Outcome::held ? raise(SIGKILL) : 0);
    }
    int status = 0;
    waitpid(holder, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));

    EXPECT_EQ(StoreLock(file).take(), Outcome::held);
}

TEST_F(StoreLockTest, MeansNothingByWhatTheFileContains) {
    write(file, "4711\nvelmora\nanother-machine\n");

    EXPECT_EQ(StoreLock(file).take(), Outcome::held);
    EXPECT_EQ(contentOf(file), "4711\nvelmora\nanother-machine\n");
}

TEST_F(StoreLockTest, IsUnavailableWhereSomethingElseLies) {
    fs::create_directory(file);
    EXPECT_EQ(StoreLock(file).take(), Outcome::unavailable);

    fs::remove(file);
    fs::create_symlink("/nowhere", file);
    EXPECT_EQ(StoreLock(file).take(), Outcome::unavailable);

    EXPECT_EQ(StoreLock(folder.path() / "absent" / "settings.lock").take(), Outcome::unavailable);
}

} // namespace
} // namespace velmora
