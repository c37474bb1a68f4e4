#include "ui/kit/menu/PopupPlace.h"

#include <gtest/gtest.h>

namespace velmora {

namespace {

constexpr QSizeF window{400, 600};

TEST(PopupPlace, OpensUnderItsAnchorAndAsWideAsIt) {
    const QRectF place = PopupPlace::beside({20, 100, 300, 30}, {230, 200}, window);
    EXPECT_EQ(place, QRectF(20, 134, 300, 200));
}

TEST(PopupPlace, IsWiderThanAnAnchorThatIsTooNarrow) {
    EXPECT_EQ(PopupPlace::beside({20, 100, 60, 30}, {230, 200}, window).width(), 230);
}

TEST(PopupPlace, MovesLeftRatherThanBeyondTheWindow) {
    const QRectF place = PopupPlace::beside({350, 100, 40, 30}, {230, 200}, window);
    EXPECT_EQ(place.right(), 392);
}

TEST(PopupPlace, OpensAboveWhereThereIsMoreRoom) {
    const QRectF place = PopupPlace::beside({20, 500, 300, 30}, {230, 200}, window);
    EXPECT_EQ(place, QRectF(20, 296, 300, 200));
}

TEST(PopupPlace, BecomesLowerWhereNeitherSideIsEnough) {
    const QRectF below = PopupPlace::beside({20, 100, 300, 30}, {230, 900}, window);
    EXPECT_EQ(below.top(), 134);
    EXPECT_EQ(below.bottom(), 592);

    const QRectF above = PopupPlace::beside({20, 500, 300, 30}, {230, 900}, window);
    EXPECT_EQ(above.top(), 8);
    EXPECT_EQ(above.bottom(), 496);
}

TEST(PopupPlace, NeverLeavesAWindowThatIsTooNarrow) {
    const QRectF place = PopupPlace::beside({0, 0, 100, 30}, {230, 200}, {200, 600});
    EXPECT_EQ(place.left(), 8);
    EXPECT_EQ(place.right(), 192);
}

} // namespace

} // namespace velmora
