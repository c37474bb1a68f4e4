#include "MixerScreen.h"

#include <cmath>
#include <limits>

#include <gmock/gmock.h>

namespace velmora {
namespace {

using testing::Each;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::size_t cells(const std::string& text) {
    std::size_t count = 0;
    for (const char byte : text) {
        count += (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U ? 1 : 0;
    }
    return count;
}

TEST(GainText, ShowsOneDecimalWithATrueMinus) {
    EXPECT_EQ(gainText(1.0F), "0.0 dB");
    EXPECT_EQ(gainText(0.5F), "−6.0 dB");
    EXPECT_EQ(gainText(2.0F), "+6.0 dB");
}

TEST(GainText, TreatsOneThousandthAndLessAsSilence) {
    EXPECT_EQ(gainText(0.001F), "−∞ dB");
    EXPECT_EQ(gainText(-1.0F), "−∞ dB");
    EXPECT_EQ(gainText(std::numeric_limits<float>::quiet_NaN()), "−∞ dB");
}

TEST(LevelBar, FillsHalfAtMinusThirtyDecibels) {
    EXPECT_EQ(levelBar(std::pow(10.0F, -30.0F / 20.0F), 8), "████    ");
}

TEST(LevelBar, IsEmptyBelowTheFloorAndFullAboveTheTop) {
    EXPECT_EQ(levelBar(0.0F, 3), "   ");
    EXPECT_EQ(levelBar(4.0F, 3), "███");
}

TEST(Fitted, CutsLongNamesAtAWholeCharacter) {
    EXPECT_EQ(fitted("Réverbération", 5), "Réve…");
    EXPECT_EQ(fitted("Hé", 4), "Hé  ");
}

TEST(Fitted, KeepsANameFromSteeringTheTerminal) {
    EXPECT_EQ(fitted("a\x1b[2Jb", 6), "a [2Jb");
}

TEST(DrawMixer, KeepsEveryLineWithinTheColumns) {
    MixerView view;
    view.title = "Velmora";
    view.strips = {{.name = std::string(300, 'n'), .level = 0.5F, .gain = 1.0F}};
    view.notices = {std::string(300, 'e')};
    view.footer = {std::string(300, 'f')};

    for (const std::string& line : drawMixer(view, 60, false)) {
        EXPECT_LE(cells(line), 60U) << line;
    }
}

TEST(DrawMixer, MarksSelectionEffectsAndMutedApplications) {
    MixerView view;
    view.strips = {{.name = "Player",
                    .level = 0.0F,
                    .gain = 1.0F,
                    .directMuted = true,
                    .hasEffects = true,
                    .selected = true}};

    const std::string line = drawMixer(view, 80, false)[2];

    EXPECT_THAT(line, StartsWith("▸ Player"));
    EXPECT_THAT(line, HasSubstr("fx"));
    EXPECT_THAT(line, HasSubstr("⊘"));
}

TEST(DrawMixer, UsesColourSequencesOnlyWhenAsked) {
    MixerView view;
    view.title = "Velmora";
    view.notices = {"Choisir d'abord une source"};

    EXPECT_THAT(drawMixer(view, 40, false), Each(Not(HasSubstr("\x1b"))));
    EXPECT_THAT(drawMixer(view, 40, true)[0], HasSubstr("\x1b[38;2;"));
}

} // namespace
} // namespace velmora
