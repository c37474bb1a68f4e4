#include "operations/NamedChoice.h"

#include <gtest/gtest.h>
#include <vector>

namespace velmora {
namespace {

using Found = std::expected<std::size_t, NameMiss>;

const std::vector<NamedChoice> list{{.id = "app-1", .name = "Firefox", .alias = "org.firefox"},
                                    {.id = "app-2", .name = "Fireplace"},
                                    {.id = "dev-3", .name = "Élan 2"},
                                    {.id = "dev-4", .name = "Fire"},
                                    {.id = "dev-5", .name = "2"}};

TEST(NamedChoice, IsFoundByItsIdItsAliasAndItsName) {
    EXPECT_EQ(chosen(list, "dev-3"), Found(2));
    EXPECT_EQ(chosen(list, "org.firefox"), Found(0));
    EXPECT_EQ(chosen(list, "Fireplace"), Found(1));
}

TEST(NamedChoice, IsFoundByItsNumberUnlessSomethingIsCalledSo) {
    EXPECT_EQ(chosen(list, "4"), Found(3));
    EXPECT_EQ(chosen(list, "2"), Found(4));
    EXPECT_EQ(chosen(list, "0"), Found(std::unexpected(NameMiss::none)));
    EXPECT_EQ(chosen(list, "6"), Found(std::unexpected(NameMiss::none)));
    EXPECT_EQ(chosen(list, "99999999999999999999999"), Found(std::unexpected(NameMiss::none)));
}

TEST(NamedChoice, IsFoundByTheBeginningOfItsNameInAnyCaseWhenOnlyOneFits) {
    EXPECT_EQ(chosen(list, "firef"), Found(0));
    EXPECT_EQ(chosen(list, "éLAN"), Found(2));
    EXPECT_EQ(chosen(list, "fi"), Found(std::unexpected(NameMiss::several)));
}

TEST(NamedChoice, AWholeNameGoesBeforeTheBeginningOfOthers) {
    EXPECT_EQ(chosen(list, "Fire"), Found(3));
}

TEST(NamedChoice, IsNotGuessedFromNothing) {
    EXPECT_EQ(chosen(list, ""), Found(std::unexpected(NameMiss::none)));
    EXPECT_EQ(chosen(list, "x"), Found(std::unexpected(NameMiss::none)));
    EXPECT_EQ(chosen({}, "1"), Found(std::unexpected(NameMiss::none)));
}

TEST(NamedChoice, TwoOfOneNameNeedAnotherWord) {
    const std::vector<NamedChoice> twins{{.id = "a", .name = "Twin"}, {.id = "b", .name = "Twin"}};

    EXPECT_EQ(chosen(twins, "Twin"), Found(std::unexpected(NameMiss::several)));
    EXPECT_EQ(chosen(twins, "2"), Found(1));
}

TEST(NamedChoice, DistinctWordsFindEachEntryAgain) {
    const std::vector<NamedChoice> entries{{.id = "a", .name = "Call"},
                                           {.id = "b", .name = "Music"},
                                           {.id = "c", .name = "Call"},
                                           {.id = "d", .name = "b"},
                                           {.id = "", .name = "Two\nlines"}};

    EXPECT_EQ(distinctWords(entries), (std::vector<std::string>{"a", "Music", "c", "d"}));
}

} // namespace
} // namespace velmora
