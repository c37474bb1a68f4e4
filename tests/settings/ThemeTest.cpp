#include "settings/Theme.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

constexpr Color bytes(double red, double green, double blue) {
    return {red / 255.0, green / 255.0, blue / 255.0, 1.0};
}

TEST(Theme, FourColoursFollowTheScheme) {
    EXPECT_EQ(Theme::ink, (DynamicColor{bytes(20, 51, 63), bytes(242, 231, 207)}));
    EXPECT_EQ(Theme::paper, (DynamicColor{bytes(255, 251, 240), bytes(23, 50, 60)}));
    EXPECT_EQ(Theme::sand, (DynamicColor{bytes(246, 236, 214), bytes(15, 37, 48)}));
    EXPECT_EQ(Theme::shore, (DynamicColor{bytes(243, 226, 184), bytes(35, 76, 92)}));
}

TEST(Theme, FiveColoursAreTheSameInBothSchemes) {
    EXPECT_EQ(Theme::ocean, bytes(14, 127, 140));
    EXPECT_EQ(Theme::lagoon, bytes(21, 160, 172));
    EXPECT_EQ(Theme::coral, bytes(255, 106, 85));
    EXPECT_EQ(Theme::sun, bytes(255, 201, 77));
    EXPECT_EQ(Theme::palm, bytes(46, 158, 107));
}

TEST(Theme, ThreeInksAreInkAtReducedOpacity) {
    const auto expectInkAt = [](const DynamicColor& color, double opacity) {
        EXPECT_EQ(color.light, bytes(20, 51, 63).withOpacity(opacity));
        EXPECT_EQ(color.dark, bytes(242, 231, 207).withOpacity(opacity));
    };

    expectInkAt(Theme::ink60, 0.6);
    expectInkAt(Theme::ink40, 0.4);
    expectInkAt(Theme::ink15, 0.15);
}

TEST(Theme, TheAccentRunsFromOceanToLagoon) {
    EXPECT_EQ(accentGradient, (LinearGradient{bytes(14, 127, 140), bytes(21, 160, 172)}));
}

TEST(Theme, AColourIsResolvedForTheSchemeBeingDrawn) {
    EXPECT_EQ(Theme::paper.in(ColorScheme::light), bytes(255, 251, 240));
    EXPECT_EQ(Theme::paper.in(ColorScheme::dark), bytes(23, 50, 60));
}

} // namespace
} // namespace velmora
