#include "app/TerminalKeys.h"

#include <gmock/gmock.h>

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Kind = KeyPress::Kind;

TEST(ParseKeys, ReadsArrowsInBothCursorModes) {
    EXPECT_THAT(parseKeys("\x1b[A\x1bOB\x1b[C\x1b[D"),
                ElementsAre(KeyPress{Kind::up, {}},
                            KeyPress{Kind::down, {}},
                            KeyPress{Kind::right, {}},
                            KeyPress{Kind::left, {}}));
}

TEST(ParseKeys, KeepsCharactersOfSeveralBytesWhole) {
    EXPECT_THAT(parseKeys("aé…"),
                ElementsAre(KeyPress{Kind::character, "a"},
                            KeyPress{Kind::character, "é"},
                            KeyPress{Kind::character, "…"}));
}

TEST(ParseKeys, TakesALoneEscapeAsTheEscapeKey) {
    EXPECT_THAT(parseKeys("\x1b"), ElementsAre(KeyPress{Kind::escape, {}}));
}

TEST(ParseKeys, DropsUnknownSequencesWhole) {
    EXPECT_THAT(parseKeys("\x1b[15~x"), ElementsAre(KeyPress{Kind::character, "x"}));
    EXPECT_THAT(parseKeys("\x01"), IsEmpty());
}

TEST(ParseKeys, SurvivesACharacterThatIsCutOff) {
    EXPECT_THAT(parseKeys("\xe2\x80"), ElementsAre(KeyPress{Kind::character, "\xe2\x80"}));
}

TEST(ParseKeys, ReadsEnterAndBothErasingBytes) {
    EXPECT_THAT(parseKeys("\r\n\x7f\b"),
                ElementsAre(KeyPress{Kind::enter, {}},
                            KeyPress{Kind::enter, {}},
                            KeyPress{Kind::backspace, {}},
                            KeyPress{Kind::backspace, {}}));
}

} // namespace
} // namespace velmora
