#include "ui/support/QmlTest.h"
#include "ui/support/Spoken.h"

namespace velmora {

namespace {

class GumSegmentsTest : public QmlTest {
protected:
    int picks() { return root.property("picks").toInt(); }
    int current() { return root.property("current").toInt(); }

    QQuickItem& root = show(R"(Item {
        property int current: 1
        property int picks
        width: 300; height: 28
        GumSegments {
            name: "Compression"
            width: 300
            options: ["Off", "●", "●●"]
            names: ["Off", "1", "2"]
            current: parent.current
            onPicked: index => { parent.picks++; parent.current = index }
        }
    })");
};

TEST_F(GumSegmentsTest, ATapPicksItsOption) {
    pointer().click(find("2"));
    EXPECT_EQ(current(), 2);
    pointer().click(find("Off"));
    EXPECT_EQ(current(), 0);
    EXPECT_EQ(picks(), 2);
}

TEST_F(GumSegmentsTest, ArrowsPickTheNeighbourAndStopAtTheEnds) {
    find("1").forceActiveFocus();
    key(Qt::Key_Right);
    key(Qt::Key_Right);
    EXPECT_EQ(current(), 2);
    EXPECT_TRUE(find("2").hasActiveFocus());
    EXPECT_EQ(picks(), 1);

    key(Qt::Key_Left);
    key(Qt::Key_Left);
    key(Qt::Key_Left);
    EXPECT_EQ(current(), 0);
}

TEST_F(GumSegmentsTest, IsOneStopForTheKeyboard) {
    key(Qt::Key_Tab);
    EXPECT_TRUE(find("1").hasActiveFocus()) << "the chosen one";
    key(Qt::Key_Tab);
    EXPECT_TRUE(find("1").hasActiveFocus()) << "there is no other";
}

TEST_F(GumSegmentsTest, CanBeReachedWhenNoneIsChosen) {
    root.setProperty("current", 7);
    key(Qt::Key_Tab);
    EXPECT_TRUE(find("Off").hasActiveFocus());
}

TEST_F(GumSegmentsTest, IsAGroupOfRadioButtons) {
    EXPECT_EQ(spokenRole(find("Compression")), QAccessible::Grouping);
    EXPECT_EQ(spokenRole(find("Off")), QAccessible::RadioButton);
    EXPECT_TRUE(spokenState(find("1")).checked);
    EXPECT_FALSE(spokenState(find("2")).checked);
    ASSERT_TRUE(speakAction(find("2"), QAccessibleActionInterface::pressAction()));
    EXPECT_EQ(current(), 2);
}

TEST_F(GumSegmentsTest, MarksTheChosenOneWithOcean) {
    const QColor ocean(0x0E, 0x7F, 0x8C);
    EXPECT_EQ(colorAt(find("1"), {20, 14}), ocean);
    EXPECT_NE(colorAt(find("2"), {20, 14}), ocean);
}

TEST_F(GumSegmentsTest, DoesNothingWhileDisabled) {
    root.setEnabled(false);
    pointer().click(find("2"));
    EXPECT_EQ(picks(), 0);
    EXPECT_NEAR(find("Compression").opacity(), 0.4, 1e-9);
}

} // namespace

} // namespace velmora
