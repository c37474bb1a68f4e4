#include "ui/support/QmlTest.h"

namespace velmora {

namespace {

using namespace std::chrono_literals;

class WheelGestureTest : public QmlTest {
protected:
    [[nodiscard]] int moves() { return find("fader").property("moves").toInt(); }
    [[nodiscard]] double scrolled() { return list.property("contentY").toDouble(); }
    void turn(const QString& over, Qt::KeyboardModifiers modifiers = {}) {
        pointer().wheel(find(over), {0, -120}, modifiers);
        advance(1s); // a list glides
    }

    QQuickItem& list = show(R"(Flickable {
        width: 216; height: 100; contentHeight: 1000
        boundsBehavior: Flickable.StopAtBounds
        Item { objectName: "label"; width: 100; height: 40 }
        FaderSlider {
            objectName: "fader"
            property int moves
            y: 50
            width: 216
            position: 0.5
            onMoved: moves++
        }
    })");
};

TEST_F(WheelGestureTest, ScrollsTheListOverAFaderThatHasNeitherFocusNorAModifier) {
    turn("fader");
    EXPECT_EQ(moves(), 0);
    EXPECT_GT(scrolled(), 0);
}

TEST_F(WheelGestureTest, MovesAFaderThatHasTheFocus) {
    find("fader").forceActiveFocus();
    turn("fader");
    EXPECT_EQ(moves(), 1);
    EXPECT_EQ(scrolled(), 0);
}

TEST_F(WheelGestureTest, MovesAFaderWhileAModifierIsHeld) {
    for (const auto modifier : {Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier}) {
        turn("fader", modifier);
    }
    EXPECT_EQ(moves(), 3);
    EXPECT_EQ(scrolled(), 0);
}

TEST_F(WheelGestureTest, MovesAnyFaderWhereNothingCanScroll) {
    list.setProperty("contentHeight", 90);
    turn("fader");
    EXPECT_EQ(moves(), 1);
}

TEST_F(WheelGestureTest, NeverMovesAFaderAtTheEndOfTheList) {
    list.setProperty("contentY", 0);
    pointer().wheel(find("fader"), {0, 120});
    advance(1s);
    EXPECT_EQ(moves(), 0);
}

TEST_F(WheelGestureTest, StaysWithTheListUntilItHasPaused) {
    find("fader").forceActiveFocus();
    turn("label");
    const double before = scrolled();
    EXPECT_GT(before, 0);

    list.setProperty("contentY", 0); // the fader comes under the pointer
    turn("fader");
    EXPECT_EQ(moves(), 0);
    EXPECT_GT(scrolled(), 0);

    list.setProperty("contentY", 0);
    pointer().pause();
    turn("fader");
    EXPECT_EQ(moves(), 1);
}

TEST_F(WheelGestureTest, StaysWithTheListWhoseEndTheFirstTurnReaches) {
    list.setProperty("contentHeight", 130);
    find("fader").forceActiveFocus();
    turn("label");
    EXPECT_EQ(scrolled(), 30.0);
    turn("fader");
    EXPECT_EQ(moves(), 0);
}

TEST_F(WheelGestureTest, StaysWithTheFaderUntilItHasPaused) {
    find("fader").forceActiveFocus();
    turn("fader");
    turn("label");
    EXPECT_EQ(scrolled(), 0);

    pointer().pause();
    turn("label");
    EXPECT_GT(scrolled(), 0);
}

TEST_F(WheelGestureTest, LeavesThePageAloneWhenTheListInItHasReachedItsEnd) {
    QQuickItem& page = show(R"(Flickable {
        width: 216; height: 200; contentHeight: 1000
        Flickable {
            objectName: "inner"
            width: 216; height: 100; contentHeight: 130
            boundsBehavior: Flickable.StopAtBounds
            Item { objectName: "row"; width: 100; height: 130 }
        }
    })");
    for (int turns = 0; turns < 5; ++turns) {
        turn("inner");
    }
    EXPECT_EQ(find("inner").property("contentY"), 30.0);
    EXPECT_EQ(page.property("contentY"), 0.0);

    pointer().pause();
    turn("inner");
    EXPECT_GT(page.property("contentY").toDouble(), 0);
}

} // namespace

} // namespace velmora
