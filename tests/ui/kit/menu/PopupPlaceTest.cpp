#include "ui/kit/menu/PopupPlace.h"

#include <gtest/gtest.h>

namespace velmora {

namespace {

constexpr QRectF room{0, 0, 400, 600};

TEST(PopupPlace, OpensUnderItsAnchorAndAsWideAsIt) {
    const QRectF place = PopupPlace::beside({20, 100, 300, 30}, {230, 200}, room, room);
    EXPECT_EQ(place, QRectF(20, 134, 300, 200));
}

TEST(PopupPlace, IsWiderThanAnAnchorThatIsTooNarrow) {
    EXPECT_EQ(PopupPlace::beside({20, 100, 60, 30}, {230, 200}, room, room).width(), 230);
}

TEST(PopupPlace, MovesLeftRatherThanBeyondTheRoom) {
    const QRectF wide(0, 0, 1000, 600); // a window that reaches beyond its screen
    const QRectF place = PopupPlace::beside({350, 100, 40, 30}, {230, 200}, room, wide);
    EXPECT_EQ(place.right(), 392);
}

TEST(PopupPlace, EndsWithItsAnchorRatherThanBeyondTheWindow) {
    const QRectF window(50, 50, 200, 500);
    EXPECT_EQ(PopupPlace::beside({200, 100, 40, 30}, {150, 200}, room, window).right(), 240);
    EXPECT_EQ(PopupPlace::beside({60, 100, 40, 30}, {150, 200}, room, window).left(), 60);
    EXPECT_EQ(PopupPlace::beside({200, 100, 40, 30}, {195, 200}, room, window).left(), 197)
        << "what is too wide for the window leaves it to the right";
}

TEST(PopupPlace, OpensAboveWhereThereIsMoreRoom) {
    const QRectF place = PopupPlace::beside({20, 500, 300, 30}, {230, 200}, room, room);
    EXPECT_EQ(place, QRectF(20, 296, 300, 200));
}

TEST(PopupPlace, BecomesLowerWhereNeitherSideIsEnough) {
    const QRectF below = PopupPlace::beside({20, 100, 300, 30}, {230, 900}, room, room);
    EXPECT_EQ(below.top(), 134);
    EXPECT_EQ(below.bottom(), 592);

    const QRectF above = PopupPlace::beside({20, 500, 300, 30}, {230, 900}, room, room);
    EXPECT_EQ(above.top(), 8);
    EXPECT_EQ(above.bottom(), 496);
}

TEST(PopupPlace, NeverLeavesARoomThatIsTooNarrow) {
    const QRectF place =
        PopupPlace::beside({0, 0, 100, 30}, {230, 200}, {0, 0, 200, 600}, {0, 0, 200, 600});
    EXPECT_EQ(place.left(), 8);
    EXPECT_EQ(place.right(), 192);
}

TEST(PopupPlace, KeepsToARoomThatBeginsElsewhere) {
    const QRectF second{1000, 200, 400, 600};
    EXPECT_EQ(PopupPlace::beside({900, 300, 60, 30}, {230, 200}, second, second),
              QRectF(1008, 334, 230, 200));
    EXPECT_EQ(PopupPlace::beside({1020, 700, 300, 30}, {230, 900}, second, second).top(), 208);
}

} // namespace

} // namespace velmora
