#include "ui/support/QmlTest.h"
#include "ui/support/Spoken.h"

namespace velmora {

namespace {

class BipolarSliderTest : public QmlTest {
protected:
    double value() { return root.property("value").toDouble(); }
    /// Where the raw value of the slider, 200 points of travel for 24 dB, is this.
    QPointF placeOf(double db) { return {8 + 200 * (db + 12) / 24, 12}; }
    double dragTo(double db) {
        pointer().press(slider, placeOf(db));
        pointer().release();
        pointer().pause();
        return value();
    }

    QQuickItem& root = show(R"(Item {
        property real value: 6
        width: 216; height: 24
        BipolarSlider {
            name: "Gain"
            valueText: "text"
            width: 216
            range: 12
            step: 1
            value: parent.value
            onMoved: value => parent.value = value
        }
    })");
    QQuickItem& slider = find("Gain");
};

TEST_F(BipolarSliderTest, RestsAtZeroNearTheMiddle) {
    EXPECT_EQ(dragTo(0.47), 0.0);
    EXPECT_EQ(dragTo(-0.47), 0.0);
    EXPECT_NEAR(dragTo(0.49), 0.49, 1e-9);
    EXPECT_NEAR(dragTo(-0.49), -0.49, 1e-9);
}

TEST_F(BipolarSliderTest, ReachesBothEnds) {
    pointer().press(slider, placeOf(0));
    pointer().moveTo(slider, placeOf(-100));
    EXPECT_EQ(value(), -12.0);
    pointer().moveTo(slider, placeOf(100));
    EXPECT_EQ(value(), 12.0);
}

TEST_F(BipolarSliderTest, ADoubleClickSetsZeroAndIgnoresTheRestOfItsGesture) {
    pointer().click(slider, placeOf(6));
    pointer().pressAgain();
    pointer().moveTo(slider, placeOf(-6));
    pointer().release();
    EXPECT_EQ(value(), 0.0);
}

TEST_F(BipolarSliderTest, AModifierDragSetsZeroAndNeverMoves) {
    pointer().press(slider, placeOf(6), Qt::AltModifier);
    pointer().moveTo(slider, placeOf(-6), Qt::AltModifier);
    EXPECT_EQ(value(), 0.0);
}

TEST_F(BipolarSliderTest, StepsByWheelAndKeysAlsoThroughTheDetent) {
    root.setProperty("value", 0);
    pointer().wheel(slider, {0, 120}, Qt::ShiftModifier);
    EXPECT_NEAR(value(), 0.1, 1e-9) << "not caught by the detent";

    slider.forceActiveFocus();
    key(Qt::Key_Left);
    EXPECT_EQ(value(), 0.0) << "but it stops at zero";
    key(Qt::Key_Left);
    EXPECT_EQ(value(), -1.0);
    key(Qt::Key_Home);
    EXPECT_EQ(value(), -12.0);
    key(Qt::Key_Delete);
    EXPECT_EQ(value(), 0.0);
}

TEST_F(BipolarSliderTest, DrawsAValueBeyondItsRangeAtTheEnd) {
    root.setProperty("value", 40);
    EXPECT_EQ(find("thumb").x(), 200);
}

TEST_F(BipolarSliderTest, FillsFromTheMiddleToTheThumb) {
    // The track is ink at 15 % on the window's white, the filled part blue-green.
    const auto isFilled = [&](double db) { return colorAt(slider, placeOf(db)).red() < 0x40; };
    EXPECT_TRUE(isFilled(3));
    EXPECT_FALSE(isFilled(-3));

    root.setProperty("value", -6);
    EXPECT_FALSE(isFilled(3));
    EXPECT_TRUE(isFilled(-3));
}

TEST_F(BipolarSliderTest, IsASliderForAScreenReader) {
    EXPECT_EQ(spokenRole(slider), QAccessible::Slider);
    EXPECT_EQ(spokenDescription(slider), "text");
    EXPECT_EQ(spokenValue(slider), 6.0);

    ASSERT_TRUE(speakValue(slider, -3));
    EXPECT_EQ(value(), -3.0);
    ASSERT_TRUE(speakAction(slider, QAccessibleActionInterface::decreaseAction()));
    EXPECT_EQ(value(), -4.0);
}

TEST_F(QmlTest, ABipolarSliderStepsByAHundredthOfItsRangeUnlessToldOtherwise) {
    QQuickItem& root = show(R"(BipolarSlider {
        property real last: -1
        name: "Tone"; width: 216; range: 1; value: 0
        onMoved: value => last = value
    })");
    pointer().wheel(find("Tone"), {0, 120});
    EXPECT_NEAR(root.property("last").toDouble(), 0.01, 1e-9);
}

} // namespace

} // namespace velmora
