#include "ui/kit/menu/MenuFixture.h"

#include "ui/support/Spoken.h"

#include <QKeyEvent>
#include <QScreen>

namespace velmora {

namespace {

class GumMenuPopupTest : public MenuFixture {
protected:
    GumMenuPopupTest() {
        menu.setItems(sources());
        root = &show(R"(Item {
            id: root
            required property GumMenuModel menu
            property int clicksBelow
            width: 480; height: 640
            GumButton { id: button; text: "Open"; x: 20; y: 20; onClicked: popup.open(root.menu) }
            GumButton { text: "Below"; x: 20; y: 400; onClicked: root.clicksBelow++ }
            GumMenuPopup { id: popup; objectName: "popup"; anchor: button; name: "Sources" }
        })",
                     {{"menu", QVariant::fromValue(&menu)}});
    }
    void open() {
        find("Open").forceActiveFocus();
        key(Qt::Key_Return);
    }

    QQuickItem* root = nullptr;
};

TEST_F(GumMenuPopupTest, OpensUnderItsAnchorAndTakesTheFocus) {
    open();
    QQuickItem& view = find("Sources");
    EXPECT_EQ(view.mapToGlobal({0, 0}), find("Open").mapToGlobal({0, find("Open").height() + 4}));
    EXPECT_TRUE(find("Firefox").hasActiveFocus());
}

TEST_F(GumMenuPopupTest, EscapeClosesItAndReturnsTheFocus) {
    open();
    key(Qt::Key_Escape);
    EXPECT_FALSE(isShown("Sources"));
    EXPECT_TRUE(find("Open").hasActiveFocus());
    EXPECT_TRUE(happened.isEmpty());
}

TEST_F(GumMenuPopupTest, AChoiceClosesIt) {
    open();
    pointer().click(find("Firefox"));
    settle();
    EXPECT_EQ(happened, QStringList("Firefox"));
    EXPECT_FALSE(isShown("Sources"));
}

TEST_F(GumMenuPopupTest, UnfoldingDoesNotCloseIt) {
    open();
    pointer().click(find("Interface"));
    EXPECT_TRUE(isShown("Inputs 1-2"));
}

TEST_F(GumMenuPopupTest, APressOutsideClosesItAndDoesNothingElse) {
    open();
    pointer().click(*root, {40, 410});
    settle();
    EXPECT_FALSE(isShown("Sources"));
    EXPECT_EQ(root->property("clicksBelow"), 0);
}

TEST_F(GumMenuPopupTest, StaysOpenAndFollowsItsAnchorWhenItsWindowChanges) {
    open();
    window().resize(400, 500);
    window().setPosition(70, 90);
    settle();
    const QPointF place = find("Sources").mapToGlobal({0, 0});
    EXPECT_EQ(place, find("Open").mapToGlobal({0, find("Open").height() + 4}));
    key(Qt::Key_Return);
    EXPECT_EQ(happened, QStringList("Firefox"));
}

TEST_F(GumMenuPopupTest, FollowsAnAnchorThatIsMovedInItsWindow) {
    open();
    find("Open").setY(120);
    advance(std::chrono::milliseconds(50));
    EXPECT_EQ(find("Sources").mapToGlobal({0, 0}),
              find("Open").mapToGlobal({0, find("Open").height() + 4}));
}

TEST_F(GumMenuPopupTest, KeysThatTheWindowBelowGetsWhileItClosesDoNothing) {
    open();
    QQuickItem& view = find("Sources");
    key(Qt::Key_Escape);
    QKeyEvent late(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
    QCoreApplication::sendEvent(view.window(), &late);
    QKeyEvent letter(QEvent::KeyPress, Qt::Key_F, Qt::NoModifier, "f");
    QCoreApplication::sendEvent(view.window(), &letter);
    EXPECT_TRUE(happened.isEmpty()); // and a warning would fail the test
}

TEST_F(GumMenuPopupTest, APressOnItsShadowClosesIt) {
    open();
    QQuickItem& view = find("Sources");
    pointer().click(view, {-4, 20});
    settle();
    EXPECT_FALSE(isShown("Sources"));
    EXPECT_TRUE(happened.isEmpty());
}

TEST_F(GumMenuPopupTest, AGrabbedPressBesideItClosesIt) {
    open();
    QQuickItem& view = find("Sources");
    pointer().click(view, {-300, 20});
    settle();
    EXPECT_FALSE(isShown("Sources"));
}

TEST_F(GumMenuPopupTest, ClosesWithItsWindow) {
    open();
    QQuickItem& view = find("Sources");
    window().hide();
    settle();
    EXPECT_FALSE(view.window()->isVisible());
}

TEST_F(GumMenuPopupTest, ClosesWhenAnotherWindowBecomesTheActiveOne) {
    open();
    QQuickWindow other;
    other.show();
    other.requestActivate();
    settle();
    ASSERT_FALSE(window().isActive());
    EXPECT_FALSE(isShown("Sources"));
}

TEST_F(GumMenuPopupTest, LeavesASmallWindowButNotTheScreen) {
    window().resize(300, 200);
    menu.setItems(entries(50));
    settle();
    open();
    const QQuickItem& view = find("Sources");
    EXPECT_EQ(view.height(), 380);
    EXPECT_TRUE(window().screen()->availableGeometry().contains(view.window()->geometry()));
}

TEST_F(GumMenuPopupTest, MayBeOpenWhenItsWindowGoes) {
    open();
    EXPECT_TRUE(isShown("Sources")); // the fixture closes the window next
}

TEST_F(GumMenuPopupTest, CanBeOpenedAgain) {
    open();
    key(Qt::Key_Escape);
    open();
    EXPECT_TRUE(isShown("Sources"));
}

} // namespace

} // namespace velmora
