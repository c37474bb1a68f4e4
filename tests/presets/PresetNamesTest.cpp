#include "presets/PresetNames.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velmora {
namespace {

std::string freeBeside(const std::vector<std::string>& taken, std::string_view wanted) {
    std::vector<Preset> presets;
    for (const auto& name : taken) {
        presets.push_back({.name = name});
    }
    return freePresetName(presets, wanted);
}

TEST(PresetNames, AFreeNameStays) {
    EXPECT_EQ(freeBeside({}, "Podcast"), "Podcast");
    EXPECT_EQ(freeBeside({"podcast", "Podcast "}, "Podcast"), "Podcast");
    EXPECT_EQ(freeBeside({"Podcast"}, "Podcast (7)"), "Podcast (7)");
}

TEST(PresetNames, ATakenNameGetsTheFirstFreeNumber) {
    EXPECT_EQ(freeBeside({"Podcast"}, "Podcast"), "Podcast (2)");
    EXPECT_EQ(freeBeside({"Podcast", "Podcast (2)", "Podcast (4)"}, "Podcast"), "Podcast (3)");
}

TEST(PresetNames, ANumberCountsOn) {
    EXPECT_EQ(freeBeside({"Podcast", "Podcast (2)"}, "Podcast (2)"), "Podcast (3)");
}

TEST(PresetNames, OnlyAWholeNumberAfterANameCounts) {
    for (const auto* const name :
         {"", "()", "(2)", " (2)", "a ()", "a(2)", "a (b)", "a (2b)", ")"}) {
        EXPECT_EQ(freeBeside({name}, name), std::string(name) + " (2)") << name;
    }
}

} // namespace
} // namespace velmora
