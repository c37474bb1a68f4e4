#include "soak/Rest.h"

#include <gtest/gtest.h>

namespace velmora::soak {
namespace {

constexpr std::int64_t mebibyte = 1 << 20;

std::vector<Rest> rests(std::int64_t bytesEach, std::int64_t descriptorsEach) {
    std::vector<Rest> all;
    for (std::int64_t at = 0; at < 12; ++at) {
        all.push_back({.residentBytes = 50 * mebibyte + at * bytesEach,
                       .descriptors = 40 + at * descriptorsEach});
    }
    return all;
}

TEST(Rest, FindsNothingInWhatStaysAsItIs) {
    EXPECT_TRUE(growth(rests(0, 0), true).empty());
}

TEST(Rest, FindsMemoryAndDescriptorsThatGrow) {
    EXPECT_EQ(growth(rests(mebibyte, 0), true).size(), 1U);
    EXPECT_EQ(growth(rests(0, 2), true).size(), 1U);
    EXPECT_TRUE(growth(rests(mebibyte, 0), false).empty());
}

TEST(Rest, DoesNotCountWhatIsMadeOnceAtTheBeginning) {
    auto all = rests(0, 0);
    all.front() = {.residentBytes = 10 * mebibyte, .descriptors = 5};

    EXPECT_TRUE(growth(all, true).empty());
}

TEST(Rest, SaysNothingAfterTooFew) {
    auto all = rests(10 * mebibyte, 10);
    all.resize(5);

    EXPECT_TRUE(growth(all, true).empty());
}

} // namespace
} // namespace velmora::soak
