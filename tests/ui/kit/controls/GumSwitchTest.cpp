#include "ui/support/QmlTest.h"
#include "ui/support/Spoken.h"

namespace velmora {

namespace {

using namespace std::chrono_literals;

class GumSwitchTest : public QmlTest {
protected:
    void set(bool checked) {
        control.setProperty("checked", checked);
        advance(300ms);
    }
    int toggles() { return control.property("toggles").toInt(); }
    QQuickItem& knob() { return find("knob"); }

    QQuickItem& control = show(R"(GumSwitch {
        property int toggles
        name: "Anti-plosives"
        x: 20; y: 20
        onToggled: toggles++
    })");
};

TEST_F(GumSwitchTest, ATapAnywhereAsksForTheOtherState) {
    pointer().click(control, {1, 1});
    pointer().pause();
    pointer().click(control, {control.width() - 1, control.height() - 1});

    EXPECT_EQ(toggles(), 2);
    EXPECT_EQ(control.property("checked"), false) << "it does not change by itself";
}

TEST_F(GumSwitchTest, KeysToggleIt) {
    control.forceActiveFocus();
    key(Qt::Key_Space);
    key(Qt::Key_Return);
    EXPECT_EQ(toggles(), 2);
}

TEST_F(GumSwitchTest, ItsKnobIsSevenPointsLessThanItsTrack) {
    EXPECT_EQ(knob().width(), control.property("trackHeight").toDouble() - 7);
    EXPECT_EQ(knob().height(), knob().width());
}

TEST_F(GumSwitchTest, ShowsItsStateInColourAndPlaceInBothAppearances) {
    struct Look {
        const char* appearance;
        QColor shore;
        QColor paper;
    };
    for (const auto& look : {Look{"light", 0xF3E2B8, 0xFFFBF0}, Look{"dark", 0x234C5C, 0x17323C}}) {
        settings.setAppearance(look.appearance);
        const QPointF middleOfKnob(knob().width() / 2, knob().height() / 2);
        const QPointF middleOfTrack(control.width() / 2, control.height() / 2);

        set(false);
        EXPECT_EQ(colorAt(control, middleOfTrack), look.shore) << look.appearance;
        EXPECT_EQ(colorAt(knob(), middleOfKnob), look.paper) << look.appearance;
        EXPECT_LT(knob().x(), control.width() / 2 - knob().width());

        set(true);
        EXPECT_EQ(colorAt(control, middleOfTrack), QColor(0x0E, 0x7F, 0x8C)) << look.appearance;
        EXPECT_EQ(colorAt(knob(), middleOfKnob), QColor(0xFF, 0xC9, 0x4D)) << look.appearance;
        EXPECT_GT(knob().x(), control.width() / 2);
    }
}

TEST_F(GumSwitchTest, GlidesForTwentyTwoHundredthsOfASecond) {
    const double off = knob().x();
    const double on = control.width() - knob().width() - off;

    control.setProperty("checked", true);
    advance(16ms); // it begins with the next frame
    advance(112ms);
    EXPECT_NEAR(knob().x(), (off + on) / 2, 1.5) << "halfway at half the time: eased at both ends";
    advance(80ms);
    EXPECT_LT(knob().x(), on);
    advance(48ms);
    EXPECT_EQ(knob().x(), on);
}

TEST_F(GumSwitchTest, IsACheckBoxForAScreenReader) {
    EXPECT_EQ(spokenRole(control), QAccessible::CheckBox);
    EXPECT_EQ(spokenName(control), "Anti-plosives");
    EXPECT_TRUE(spokenState(control).checkable);
    EXPECT_FALSE(spokenState(control).checked);
    set(true);
    EXPECT_TRUE(spokenState(control).checked);

    ASSERT_TRUE(speakAction(control, QAccessibleActionInterface::toggleAction()));
    EXPECT_EQ(toggles(), 1);
}

TEST_F(GumSwitchTest, DoesNothingWhileDisabled) {
    control.setEnabled(false);
    pointer().click(control);
    EXPECT_EQ(toggles(), 0);
    EXPECT_LT(control.opacity(), 1);
}

TEST_F(GumSwitchTest, IsAtLeastTwentyFourPointsHigh) {
    EXPECT_GE(control.height(), 24);
    EXPECT_GE(control.width(), 24);
}

} // namespace

} // namespace velmora
