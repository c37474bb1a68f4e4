#include "ui/support/QmlTest.h"
#include "ui/support/Spoken.h"

#include <cmath>

namespace velmora {

namespace {

double fromDecibels(double db) {
    return std::pow(10.0, db / 20.0);
}

// The read-out takes 40 points and 10 before it: the fader is 216 points wide.
class BalanceFaderTest : public QmlTest {
protected:
    double gain() { return root.property("gain").toDouble(); }
    void setGain(double linear) { root.setProperty("gain", linear); }
    QString readOut() { return find("readOut").property("text").toString(); }
    double thumbPosition() { return find("thumb").x() / 200; }

    QQuickItem& root = show(R"(Item {
        property real gain: 1
        width: 266; height: 24
        BalanceFader {
            name: "Firefox"
            width: 266
            gain: parent.gain
            onGainEdited: gain => parent.gain = gain
        }
    })");
    QQuickItem& fader = find("Firefox");
};

TEST_F(BalanceFaderTest, ReadsItsGainInDecibels) {
    EXPECT_EQ(readOut(), "0 dB");
    setGain(1.0593);
    EXPECT_EQ(readOut(), "+1 dB");
    setGain(0.5);
    EXPECT_EQ(readOut(), "\u22126 dB");
    setGain(0);
    EXPECT_EQ(readOut(), "\u2212\u221E");
}

TEST_F(BalanceFaderTest, StandsWhereItsGainIs) {
    EXPECT_NEAR(thumbPosition(), 60.0 / 66, 1e-9);
    setGain(0);
    EXPECT_EQ(thumbPosition(), 0);
    setGain(1e-6);
    EXPECT_NEAR(thumbPosition(), 0.001, 1e-9);
    setGain(8);
    EXPECT_EQ(thumbPosition(), 1);
}

TEST_F(BalanceFaderTest, IsExactlySilentAtTheFarLeft) {
    pointer().press(fader, {100, 12});
    pointer().moveTo(fader, {-20, 12});
    EXPECT_EQ(gain(), 0.0);
}

TEST_F(BalanceFaderTest, ReachesSixDecibelsAtTheFarRight) {
    pointer().press(fader, {100, 12});
    pointer().moveTo(fader, {230, 12});
    EXPECT_NEAR(gain(), fromDecibels(6), 1e-9);
}

TEST_F(BalanceFaderTest, ADoubleClickSetsUnityAndNothingElse) {
    setGain(0.1);
    pointer().click(fader, {100, 12});
    pointer().pressAgain();
    pointer().moveTo(fader, {20, 12});
    pointer().release();
    EXPECT_EQ(gain(), 1.0);
}

TEST_F(BalanceFaderTest, AModifierDragSetsUnity) {
    setGain(0.1);
    pointer().press(fader, {20, 12}, Qt::ControlModifier);
    pointer().moveTo(fader, {40, 12}, Qt::ControlModifier);
    EXPECT_EQ(gain(), 1.0);
}

TEST_F(BalanceFaderTest, ADoubleTapOnTheReadOutSetsUnity) {
    setGain(0.1);
    pointer().doubleClick(find("readOut"), {20, 12});
    EXPECT_EQ(gain(), 1.0);
}

TEST_F(BalanceFaderTest, WheelAndArrowsMoveByADecibelAndByATenthWithShift) {
    pointer().wheel(fader, {0, -120});
    EXPECT_NEAR(gain(), fromDecibels(-1), 1e-9);
    pointer().wheel(fader, {0, -120}, Qt::ShiftModifier);
    EXPECT_NEAR(gain(), fromDecibels(-1.1), 1e-9);

    fader.forceActiveFocus();
    key(Qt::Key_Right);
    EXPECT_NEAR(gain(), fromDecibels(-0.1), 1e-9);
    key(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_NEAR(gain(), 1.0, 1e-9);
    key(Qt::Key_PageDown);
    EXPECT_NEAR(gain(), fromDecibels(-6), 1e-9);
}

TEST_F(BalanceFaderTest, StepsOutOfSilenceAndBackIntoIt) {
    setGain(0);
    pointer().wheel(fader, {0, 120});
    EXPECT_NEAR(gain(), fromDecibels(-59), 1e-9);
    pointer().wheel(fader, {0, -120});
    EXPECT_EQ(gain(), 0.0);
    pointer().wheel(fader, {0, -120});
    EXPECT_EQ(gain(), 0.0);
    pointer().wheel(fader, {0, 120}, Qt::ShiftModifier);
    EXPECT_NEAR(gain(), fromDecibels(-59.9), 1e-9);
}

TEST_F(BalanceFaderTest, SpeaksDecibels) {
    setGain(fromDecibels(-6));
    EXPECT_EQ(spokenRole(fader), QAccessible::Slider);
    EXPECT_EQ(spokenDescription(fader), "\u22126 dB");
    EXPECT_NEAR(spokenValue(fader).toDouble(), -6, 1e-9);
}

TEST_F(BalanceFaderTest, IsSetInDecibelsByAScreenReader) {
    ASSERT_TRUE(speakValue(fader, -12));
    EXPECT_NEAR(gain(), fromDecibels(-12), 1e-9);
    ASSERT_TRUE(speakAction(fader, QAccessibleActionInterface::increaseAction()));
    EXPECT_NEAR(gain(), fromDecibels(-11), 1e-9);
}

} // namespace

} // namespace velmora
