#include "ui/support/QmlTest.h"
#include "ui/support/Spoken.h"

namespace velmora {

namespace {

// 216 points wide with a thumb of 16: the thumb travels 200, from x = 8 to x = 208.
constexpr QPointF left(8, 12);
constexpr QPointF quarter(58, 12);
constexpr QPointF middle(108, 12);
constexpr QPointF right(208, 12);

class FaderSliderTest : public QmlTest {
protected:
    QVariantList moves() { return fader.property("moves").toList(); }
    int resets() { return fader.property("resets").toInt(); }

    QQuickItem& fader = show(R"(FaderSlider {
        property var moves: []
        property int resets
        name: "Mix"
        width: 216
        position: 0.5
        onMoved: position => moves = moves.concat(position)
        onReset: resets++
    })");
};

TEST_F(FaderSliderTest, MovesWithTheTouchAndTheDrag) {
    pointer().press(fader, quarter);
    EXPECT_EQ(moves(), QVariantList({0.25}));

    pointer().moveTo(fader, middle);
    pointer().moveTo(fader, right);
    EXPECT_EQ(moves(), QVariantList({0.25, 0.5, 1.0}));
}

TEST_F(FaderSliderTest, StopsAtBothEnds) {
    pointer().press(fader, left);
    pointer().moveTo(fader, {-300, 12});
    pointer().moveTo(fader, {900, 12});
    EXPECT_EQ(moves(), QVariantList({0.0, 0.0, 1.0}));
}

TEST_F(FaderSliderTest, AsksInsteadOfMovingItself) {
    pointer().click(fader, right);
    EXPECT_EQ(fader.property("position"), 0.5);
}

TEST_F(FaderSliderTest, ADoubleClickResetsOnceAndIgnoresTheRestOfItsGesture) {
    pointer().click(fader, quarter);
    pointer().pressAgain();
    pointer().moveTo(fader, middle);
    pointer().moveTo(fader, right);
    pointer().release();

    EXPECT_EQ(resets(), 1);
    EXPECT_EQ(moves(), QVariantList({0.25})) << "the first click is an ordinary press";
}

TEST_F(FaderSliderTest, MovesAgainInTheGestureAfterAReset) {
    pointer().doubleClick(fader, quarter);
    pointer().click(fader, middle);

    EXPECT_EQ(resets(), 1);
    EXPECT_EQ(moves(), QVariantList({0.25, 0.5}));
}

TEST_F(FaderSliderTest, AThirdQuickClickOnTheSameSpotIsAnOrdinaryPress) {
    pointer().doubleClick(fader, quarter);
    pointer().click(fader, quarter);

    EXPECT_EQ(resets(), 1);
    EXPECT_EQ(moves(), QVariantList({0.25, 0.25}));
}

TEST_F(FaderSliderTest, TwoSlowClicksAreNoDoubleClick) {
    pointer().click(fader, quarter);
    pointer().pause();
    pointer().click(fader, quarter);
    EXPECT_EQ(resets(), 0);
}

TEST_F(FaderSliderTest, TwoClicksFarApartAreNoDoubleClick) {
    pointer().click(fader, quarter);
    pointer().click(fader, right);
    EXPECT_EQ(resets(), 0);
}

TEST_F(FaderSliderTest, AModifierDragResetsOnceAndNeverMoves) {
    for (const auto modifier : {Qt::AltModifier, Qt::ControlModifier}) {
        fader.setProperty("resets", 0);
        pointer().press(fader, quarter, modifier);
        pointer().moveTo(fader, middle, modifier);
        pointer().moveTo(fader, right); // the key is let go before the button
        pointer().release();
        pointer().pause();

        EXPECT_EQ(resets(), 1);
        EXPECT_TRUE(moves().isEmpty());
    }
}

TEST_F(FaderSliderTest, AModifierPressedDuringTheDragResets) {
    pointer().press(fader, quarter);
    pointer().moveTo(fader, middle, Qt::AltModifier);
    pointer().moveTo(fader, right);

    EXPECT_EQ(resets(), 1);
    EXPECT_EQ(moves(), QVariantList({0.25}));
}

TEST_F(FaderSliderTest, BeginsAnewAfterAGestureThatWasTakenAway) {
    pointer().press(fader, quarter, Qt::AltModifier);
    fader.setEnabled(false);
    fader.setEnabled(true);
    pointer().release();
    pointer().pause();

    pointer().click(fader, middle);
    EXPECT_EQ(moves(), QVariantList({0.5}));
}

TEST_F(FaderSliderTest, TheWheelMovesAStepANotch) {
    pointer().wheel(fader, {0, 120});
    pointer().wheel(fader, {0, -240});
    pointer().wheel(fader, {0, 60}); // a finer wheel
    EXPECT_EQ(moves(), QVariantList({0.51, 0.48, 0.505}));
}

TEST_F(FaderSliderTest, AWheelThatTheDesktopInvertsMovesAsTheFingersDo) {
    pointer().wheelInverted(fader, {0, 120});
    EXPECT_EQ(moves(), QVariantList({0.49}));
}

TEST_F(FaderSliderTest, TheWheelMovesATenthOfAStepWithShiftAlsoWhereThatTurnsItSideways) {
    pointer().wheel(fader, {0, 120}, Qt::ShiftModifier);
    pointer().wheel(fader, {120, 0}, Qt::ShiftModifier);
    EXPECT_EQ(moves(), QVariantList({0.501, 0.501}));
}

TEST_F(FaderSliderTest, KeysMoveByStepsPagesAndToTheEnds) {
    fader.forceActiveFocus();
    for (const auto pressed : {Qt::Key_Right, Qt::Key_Up, Qt::Key_Left, Qt::Key_Down}) {
        key(pressed);
    }
    EXPECT_EQ(moves(), QVariantList({0.51, 0.51, 0.49, 0.49}));

    fader.setProperty("moves", QVariantList());
    for (const auto pressed : {Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End}) {
        key(pressed);
    }
    EXPECT_EQ(moves(), QVariantList({0.6, 0.4, 0.0, 1.0}));
}

TEST_F(FaderSliderTest, ShiftMakesAKeyStepATenth) {
    fader.forceActiveFocus();
    key(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(moves(), QVariantList({0.501}));
}

TEST_F(FaderSliderTest, TheKeyboardCanResetToo) {
    fader.forceActiveFocus();
    key(Qt::Key_Delete);
    key(Qt::Key_Backspace);
    EXPECT_EQ(resets(), 2);
    EXPECT_TRUE(moves().isEmpty());
}

TEST_F(FaderSliderTest, LeavesShortcutsToTheWindow) {
    fader.forceActiveFocus();
    key(Qt::Key_Right, Qt::ControlModifier);
    key(Qt::Key_A, {}, "a");
    EXPECT_TRUE(moves().isEmpty());
}

TEST_F(FaderSliderTest, DoesNothingWhileDisabled) {
    fader.setEnabled(false);
    pointer().click(fader, right);
    pointer().wheel(fader, {0, 120});
    EXPECT_TRUE(moves().isEmpty());
    EXPECT_NEAR(fader.opacity(), 0.4, 1e-9);
}

TEST_F(FaderSliderTest, IsASliderForAScreenReader) {
    EXPECT_EQ(spokenRole(fader), QAccessible::Slider);
    EXPECT_EQ(spokenName(fader), "Mix");
    EXPECT_EQ(spokenValue(fader), 0.5);
    EXPECT_TRUE(spokenState(fader).focusable);
}

TEST_F(FaderSliderTest, AScreenReaderCanSetItsValue) {
    ASSERT_TRUE(speakValue(fader, 0.75));
    EXPECT_EQ(moves(), QVariantList({0.75}));

    ASSERT_TRUE(speakAction(fader, QAccessibleActionInterface::increaseAction()));
    ASSERT_TRUE(speakAction(fader, QAccessibleActionInterface::decreaseAction()));
    EXPECT_EQ(moves(), QVariantList({0.75, 0.51, 0.49}));
}

TEST_F(FaderSliderTest, KeepsFollowingTheModelAfterAScreenReaderSetIt) {
    speakValue(fader, 0.75);
    fader.setProperty("position", 0.3);
    EXPECT_EQ(spokenValue(fader), 0.3);
    EXPECT_EQ(moves(), QVariantList({0.75})) << "a change of the model is no request";
}

TEST_F(FaderSliderTest, ShowsItsFocusToTheKeyboardOnly) {
    pointer().click(fader, middle);
    EXPECT_TRUE(fader.hasActiveFocus());
    EXPECT_FALSE(isShown("focusRing"));

    key(Qt::Key_Right);
    EXPECT_TRUE(isShown("focusRing"));

    pointer().click(fader, middle);
    EXPECT_FALSE(isShown("focusRing"));
}

TEST_F(FaderSliderTest, AnswersThePointerInBothAppearances) {
    for (const char* appearance : {"light", "dark"}) {
        settings.setAppearance(appearance);
        pointer().moveTo(fader, {108, 300});
        const QColor calm = colorAt(fader, middle);
        pointer().moveTo(fader, middle);
        const QColor hovered = colorAt(fader, middle);
        pointer().press(fader, middle);
        const QColor pressed = colorAt(fader, middle);
        pointer().release();
        pointer().pause();

        EXPECT_EQ(calm, QColor(0xFF, 0xC9, 0x4D)) << appearance;
        EXPECT_NE(hovered, calm) << appearance;
        EXPECT_NE(pressed, hovered) << appearance;
    }
}

TEST_F(QmlTest, AFaderKeepsItsDragInsideAListThatScrolls) {
    QQuickItem& list = show(R"(Flickable {
        width: 216; height: 100; contentHeight: 1000
        FaderSlider {
            objectName: "fader"
            property real last: -1
            width: 216
            position: 0
            onMoved: position => last = position
        }
    })");
    QQuickItem& fader = find("fader");

    pointer().press(fader, left);
    pointer().moveTo(fader, {58, -30});
    pointer().moveTo(fader, {108, -60});

    EXPECT_EQ(fader.property("last"), 0.5);
    EXPECT_EQ(list.property("contentY"), 0.0);
}

} // namespace

} // namespace velmora
