#include "capture/NameCompare.h"

#include "capture/Utf8.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace velmora {
namespace {

using testing::ElementsAre;

std::vector<std::string> sorted(std::vector<std::string> names) {
    std::ranges::stable_sort(names, {}, collationKey);
    return names;
}

TEST(NameCompare, IgnoresCase) {
    EXPECT_EQ(collationKey("alpha"), collationKey("ALPHA"));
    EXPECT_EQ(collationKey("Éclair"), collationKey("éCLAIR"));
    EXPECT_EQ(collationKey("ŽIŽKA Ÿ"), collationKey("žižka ÿ"));
    EXPECT_EQ(collationKey("Αθηνα"), collationKey("ΑΘΗΝΑ"));
    EXPECT_EQ(collationKey("МУЗЫКА Ё"), collationKey("музыка ё"));
}

TEST(NameCompare, SortsAccentedLettersWithTheirBaseLetter) {
    EXPECT_THAT(
        sorted({"Zoom", "Éclair", "eclipse", "Ecl", "élan", "Œuvre", "Opera", "Łódź", "Mix"}),
        ElementsAre("Ecl", "Éclair", "eclipse", "élan", "Łódź", "Mix", "Œuvre", "Opera", "Zoom"));
}

TEST(NameCompare, LetsAccentsDecideBetweenEqualBaseLetters) {
    EXPECT_THAT(sorted({"côte", "cote"}), ElementsAre("cote", "côte"));
    EXPECT_NE(collationKey("cote"), collationKey("côte"));
}

TEST(NameCompare, FindsAPartWhateverItsCase) {
    EXPECT_TRUE(containsIgnoringCase("My VelMora Mic", "velmora"));
    EXPECT_TRUE(containsIgnoringCase("CASQUE ÉTÉ", "été"));
    EXPECT_FALSE(containsIgnoringCase("Velmorà", "velmora"));
    EXPECT_FALSE(containsIgnoringCase("velmor", "velmora"));
    EXPECT_FALSE(containsIgnoringCase("", "velmora"));
}

TEST(NameCompare, TakesBytesThatAreNotUtf8) {
    EXPECT_TRUE(containsIgnoringCase("\xFF\xC3 Velmora \xE2\x82", "velmora"));
    EXPECT_EQ(codePoints("a\xFF"), (std::u32string{U'a', 0xFF}));
    EXPECT_EQ(codePoints("\xE2\x82"), (std::u32string{0xE2, 0x82}));
    EXPECT_EQ(codePoints("\x80"), (std::u32string{0x80}));
    EXPECT_EQ(codePoints("\xF8\x88\x80\x80\x80"), // the longest sequence has four
              (std::u32string{0xF8, 0x88, 0x80, 0x80, 0x80}));
}

TEST(NameCompare, ReadsSequencesOfEveryLength) {
    EXPECT_EQ(codePoints("aé€🎧"), U"aé€🎧");
}

} // namespace
} // namespace velmora
