#include "platform/pipewire/daemon/SocketWatch.h"

#include "support/TemporaryFolder.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <optional>

namespace velmora::pipewire {
namespace {

using namespace std::chrono_literals;

class SocketWatchTest : public testing::Test {
protected:
    // NOLINTBEGIN(concurrency-mt-unsafe): before and after the loop's thread
    SocketWatchTest() {
        pw_init(nullptr, nullptr);
        setenv("PIPEWIRE_RUNTIME_DIR", folder.path().c_str(), /*overwrite=*/1);
        loop.emplace("velmora-test");
        loop->start();
    }
    ~SocketWatchTest() override {
        loop.reset();
        unsetenv("PIPEWIRE_RUNTIME_DIR");
        pw_deinit();
    }
    // NOLINTEND(concurrency-mt-unsafe)

    void make(const std::string& name) const { std::ofstream(folder.path() / name) << ""; }

    support::TemporaryFolder folder{"velmora-sockets"};
    std::optional<Loop> loop;
    int told = 0;
};

TEST_F(SocketWatchTest, TellsThatTheDaemonsSocketWasMade) {
    Loop::Lock lock(*loop);
    const SocketWatch watch(*loop, [this] {
        ++told;
        loop->notify();
    });

    make("bus");
    make("pipewire-0");

    EXPECT_TRUE(lock.wait(10s, [this] { return told > 0; }));
    EXPECT_EQ(told, 1);
}

TEST_F(SocketWatchTest, TellsNothingOfAFolderThatIsNotThere) {
    setenv("PIPEWIRE_RUNTIME_DIR", "/nowhere", /*overwrite=*/1); // NOLINT(concurrency-mt-unsafe)
    const Loop::Lock lock(*loop);

    const SocketWatch watch(*loop, [this] { ++told; });

    EXPECT_EQ(told, 0);
}

} // namespace
} // namespace velmora::pipewire
