#include "settings/TextTable.h"

#include <gtest/gtest.h>

#include <array>

namespace velmora {
namespace {

constexpr std::array colours{TextPair{"rouge", "red"}, TextPair{"vert", "green"}};

TEST(TextTable, FindsTheWholeTextOnly) {
    const TextTable table{colours};

    EXPECT_EQ(table.english("vert"), "green");
    EXPECT_EQ(table.english("Vert"), std::nullopt);
    EXPECT_EQ(table.english("vert "), std::nullopt);
    EXPECT_EQ(table.english(""), std::nullopt);
}

TEST(TextTable, AnEmptyTableKnowsNothing) {
    const TextTable table{};

    EXPECT_EQ(table.english("rouge"), std::nullopt);
}

TEST(TextTableDeathTest, ADuplicateInOneListStopsTheProgram) {
    constexpr std::array twice{TextPair{"rouge", "red"}, TextPair{"rouge", "scarlet"}};

    EXPECT_DEATH(TextTable{twice}, "duplicate text: \"rouge\"");
}

TEST(TextTableDeathTest, ADuplicateAcrossListsStopsTheProgram) {
    constexpr std::array more{TextPair{"bleu", "blue"}, TextPair{"vert", "verdant"}};

    EXPECT_DEATH((TextTable{colours, more}), "duplicate text: \"vert\"");
}

} // namespace
} // namespace velmora
