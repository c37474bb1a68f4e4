#include "platform/pipewire/view/ObjectIds.h"

#include <gtest/gtest.h>

namespace velmora::pipewire {
namespace {

TEST(ObjectIds, GivesADeviceTheSameNumberInEveryRun) {
    ObjectIds firstRun;
    ObjectIds secondRun;
    static_cast<void>(secondRun.ofDevice("another device"));

    EXPECT_EQ(firstRun.ofDevice("velmora.mic"), secondRun.ofDevice("velmora.mic"));
    EXPECT_EQ(firstRun.ofDevice("velmora.mic"), hashName("velmora.mic"));
}

TEST(ObjectIds, HashesByThePublishedFormula) {
    EXPECT_EQ(hashName(""), 0x811C9DC5U); // FNV-1a, 32 bits: offset basis
    EXPECT_EQ(hashName("a"), 0xE40C292CU);
}

TEST(ObjectIds, StepsOverANumberThatAnotherDeviceHas) {
    ObjectIds ids([](std::string_view) noexcept { return AudioObjectID{7}; });

    EXPECT_EQ(ids.ofDevice("first"), 7U);
    EXPECT_EQ(ids.ofDevice("second"), 8U);
    EXPECT_EQ(ids.ofDevice("first"), 7U);
}

TEST(ObjectIds, NeverGivesZero) {
    ObjectIds ids([](std::string_view) noexcept { return AudioObjectID{0}; });

    EXPECT_NE(ids.ofDevice("device"), 0U);
    EXPECT_NE(ids.next(), 0U);
}

TEST(ObjectIds, CountsAroundTheNumbersOfDevices) {
    ObjectIds ids([](std::string_view) noexcept { return AudioObjectID{2}; });
    static_cast<void>(ids.ofDevice("device"));

    EXPECT_EQ(ids.next(), 1U);
    EXPECT_EQ(ids.next(), 3U);
}

} // namespace
} // namespace velmora::pipewire
