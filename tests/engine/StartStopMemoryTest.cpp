// A mix that was started and stopped any number of times leaves nothing behind.
#include "engine/EngineFixture.h"
#include "support/ProcessFigures.h"

#include <unistd.h>

namespace velmora {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool memoryIsOurs =
    false; // a sanitizer keeps books of its own, and freed memory for a while
#else
constexpr bool memoryIsOurs = true;
#endif

class StartStopMemory : public EngineFixture {
protected:
    void startAndStop(int times) {
        for (int round = 0; round < times; ++round) {
            engine.start();
            machine.advanceCycles(1);
            engine.stop();
            machine.sound.forgetHeard();
            machine.sound.forgetRequests();
        }
    }

    static std::int64_t residentAtRest() {
        support::returnFreedMemory();
        return support::residentBytes(getpid());
    }
};

TEST_F(StartStopMemory, GrowsByLessThanOneMebibyteInTenThousandRounds) {
    if (!memoryIsOurs) {
        GTEST_SKIP() << "a sanitizer's own memory would be counted";
    }
    engine.replaceSources({player, thirdPair});
    startAndStop(100); // the heap takes its final shape
    const std::int64_t before = residentAtRest();

    startAndStop(10'000);

    EXPECT_LT(residentAtRest() - before, 1024 * 1024);
    EXPECT_EQ(machine.sound.census(), nothingRuns);
}

} // namespace
} // namespace velmora
