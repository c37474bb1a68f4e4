#include "ui/support/QmlTest.h"
#include "ui/support/Spoken.h"

namespace velmora {

namespace {

class GumButtonTest : public QmlTest {
protected:
    int clicks() { return root.property("clicks").toInt(); }

    QQuickItem& root = show(R"(Row {
        property int clicks
        GumButton { text: "Ajouter"; onClicked: parent.clicks++ }
        GumButton { objectName: "remove"; name: "Supprimer"; symbol: "xmark"; onClicked: parent.clicks++ }
    })");
    QQuickItem& button = find("Ajouter");
};

TEST_F(GumButtonTest, IsPressedByMouseAndKeys) {
    pointer().click(button);
    button.forceActiveFocus();
    key(Qt::Key_Space);
    key(Qt::Key_Return);
    key(Qt::Key_Enter);
    EXPECT_EQ(clicks(), 4);
}

TEST_F(GumButtonTest, IsPressedOnceByAKeyThatIsHeld) {
    button.forceActiveFocus();
    key(Qt::Key_Return);
    for (int repeats = 0; repeats < 5; ++repeats) {
        QKeyEvent again(QEvent::KeyPress, Qt::Key_Return, {}, {}, true);
        QCoreApplication::sendEvent(&window(), &again);
        EXPECT_TRUE(again.isAccepted()) << "nobody else shall act on it";
    }
    EXPECT_EQ(clicks(), 1);
}

TEST_F(GumButtonTest, IsNotPressedByAReleaseElsewhere) {
    pointer().press(button, {5, 5});
    pointer().moveTo(button, {5, 300});
    pointer().release();
    EXPECT_EQ(clicks(), 0);
}

TEST_F(GumButtonTest, LeavesShortcutsToTheWindow) {
    button.forceActiveFocus();
    key(Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(clicks(), 0);
}

TEST_F(GumButtonTest, DoesNothingWhileDisabled) {
    button.setEnabled(false);
    pointer().click(button);
    EXPECT_EQ(clicks(), 0);
    EXPECT_LT(button.opacity(), 1);
}

TEST_F(GumButtonTest, IsReachedByTabAndShowsItsFocus) {
    key(Qt::Key_Tab);
    EXPECT_TRUE(button.hasActiveFocus());
    EXPECT_TRUE(isShown("focusRing"));
    key(Qt::Key_Tab);
    EXPECT_TRUE(find("remove").hasActiveFocus());
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(button.hasActiveFocus());
}

TEST_F(GumButtonTest, ShowsItsFocusToWhoeverGoesBackwards) {
    pointer().click(find("remove"));
    EXPECT_FALSE(isShown("focusRing"));
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(button.hasActiveFocus());
    EXPECT_TRUE(isShown("focusRing"));
}

TEST_F(GumButtonTest, AnswersThePointer) {
    const QPointF corner(12, 4);
    pointer().moveTo(button, {5, 300});
    const QColor calm = colorAt(button, corner);
    pointer().moveTo(button, corner);
    const QColor hovered = colorAt(button, corner);
    pointer().press(button, corner);
    EXPECT_NE(hovered, calm);
    EXPECT_NE(colorAt(button, corner), hovered);
}

TEST_F(GumButtonTest, SaysWhatItDoes) {
    EXPECT_EQ(spokenRole(button), QAccessible::Button);
    EXPECT_EQ(spokenName(button), "Ajouter");
    EXPECT_EQ(spokenName(find("remove")), "Supprimer") << "a symbol needs a name";
    ASSERT_TRUE(speakAction(button, QAccessibleActionInterface::pressAction()));
    EXPECT_EQ(clicks(), 1);
}

TEST_F(GumButtonTest, IsLargeEnoughToHit) {
    for (QQuickItem* item : {&button, &find("remove")}) {
        EXPECT_GE(item->width(), 24);
        EXPECT_GE(item->height(), 24);
    }
}

} // namespace

} // namespace velmora
