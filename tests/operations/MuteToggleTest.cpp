#include "operations/MuteToggle.h"

#include "platform/simulated/SimulatedDefaultsStore.h"
#include "support/NotNumbers.h"

#include <gtest/gtest.h>
#include <limits>

namespace velmora {
namespace {

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
TEST(MuteToggle, AGainUpToAThousandthIsMuted) {
    EXPECT_TRUE(isMutedGain(0.0F));
    EXPECT_TRUE(isMutedGain(0.001F));
    EXPECT_FALSE(isMutedGain(0.0011F));
    EXPECT_TRUE(isMutedGain(nan));
}

TEST(MuteToggle, AControlSetsNumbersFromZeroOn) {
    EXPECT_TRUE(isGain(0.0F));
    EXPECT_TRUE(isGain(2.0F));
    EXPECT_FALSE(isGain(-0.1F));
    EXPECT_FALSE(isGain(nan));
    EXPECT_FALSE(isGain(infinity));
}

TEST(MuteToggle, MutingKeepsTheGainAndUnmutingRestoresIt) {
    SimulatedDefaultsStore defaults;
    EXPECT_EQ(toggledGain(defaults, "key", 0.5F), 0.0F);
    EXPECT_EQ(defaults.read<double>("key"), 0.5);
    EXPECT_EQ(toggledGain(defaults, "key", 0.0F), 0.5F);
}

TEST(MuteToggle, UnmutingWithNothingKeptGivesUnity) {
    SimulatedDefaultsStore defaults;
    EXPECT_EQ(toggledGain(defaults, "key", 0.0F), 1.0F);
}

TEST(MuteToggle, UnmutingNeverRestoresSilence) {
    SimulatedDefaultsStore defaults({{"key", 0.001}});
    EXPECT_EQ(toggledGain(defaults, "key", 0.0F), 1.0F);
}

TEST(MuteToggle, AKeptValueOfAnotherKindCountsAsNone) {
    SimulatedDefaultsStore defaults({{"key", std::string("loud")}});
    EXPECT_EQ(toggledGain(defaults, "key", 0.0F), 1.0F);
}

} // namespace
} // namespace velmora
