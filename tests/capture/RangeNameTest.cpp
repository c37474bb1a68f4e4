#include "capture/RangeName.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

constexpr RangeWords english{.one = "Input", .several = "Inputs"};

TEST(RangeName, IsKeptInFrench) {
    EXPECT_EQ(rangeName("Interface", {.first = 3, .count = 2}), "Interface — Entrées 3-4");
    EXPECT_EQ(rangeName("Interface", {.first = 3, .count = 1}), "Interface — Entrée 3");
}

TEST(RangeName, IsShownWithTheUsersWords) {
    const AudioSource pair = DeviceChannelsSource{7, 3, 2, "Interface — Entrées 3-4"};
    const AudioSource single = DeviceChannelsSource{7, 3, 1, "Interface — Entrée 3"};
    EXPECT_EQ(shownName(pair, english), "Interface — Inputs 3-4");
    EXPECT_EQ(shownName(single, english), "Interface — Input 3");
    EXPECT_EQ(shownName(pair, frenchRangeWords), pair.name());
}

TEST(RangeName, StaysAsItIsWhenItSaysSomethingElse) {
    const AudioSource renamed = DeviceChannelsSource{7, 3, 2, "Guitare"};
    const AudioSource whole = DeviceSource{7, "Interface — Entrées 3-4"};
    EXPECT_EQ(shownName(renamed, english), "Guitare");
    EXPECT_EQ(shownName(whole, english), "Interface — Entrées 3-4");
}

} // namespace
} // namespace velmora
