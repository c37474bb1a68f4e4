#include "effects/FXParams.h"

#include "effects/Signals.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace velmora {
namespace {

static_assert(std::is_trivially_copyable_v<FXParams>);

TEST(FXParams, IsNeutralByDefault) {
    EXPECT_TRUE(FXParams{}.isNeutral());
}

TEST(FXParams, IsNotNeutralOnceAnyFieldDiffers) {
    EXPECT_FALSE(FXParams{.lowcut = 1}.isNeutral());
    EXPECT_FALSE(FXParams{.tilt = 0.005F}.isNeutral());
    EXPECT_FALSE(FXParams{.comp = -1}.isNeutral());
    EXPECT_FALSE(FXParams{.autoGain = false}.isNeutral());
    EXPECT_FALSE(FXParams{.manualDB = -6.0F}.isNeutral());
    EXPECT_FALSE(FXParams{.reverbChar = 2}.isNeutral());
    EXPECT_FALSE(FXParams{.reverbMix = 0.001F}.isNeutral());
    EXPECT_FALSE(FXParams{.plosive = true}.isNeutral());
    EXPECT_FALSE(FXParams{.denoise = true}.isNeutral());
}

TEST(FXParams, IsNeutralWithNegativeZeros) {
    const FXParams params{.tilt = -0.0F, .manualDB = -0.0F, .reverbMix = -0.0F};

    EXPECT_TRUE(params.isNeutral());
}

TEST(FXParams, ComparesFieldByField) {
    EXPECT_EQ(everyEffect, everyEffect);
    EXPECT_NE(everyEffect, FXParams{});
}

TEST(FXParams, IsUnequalToItselfWithAFieldThatIsNotANumber) {
    const FXParams params{.tilt = notANumber};

    EXPECT_FALSE(params == params);
    EXPECT_FALSE(params.isNeutral());
}

} // namespace
} // namespace velmora
