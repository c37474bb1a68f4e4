#include "ui/kit/menu/MenuFixture.h"

#include "ui/support/Spoken.h"

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
    const QPointF place = view.mapToScene({0, 0});
    EXPECT_EQ(place.x(), 20);
    EXPECT_EQ(place.y(), 20 + find("Open").height() + 4);
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

TEST_F(GumMenuPopupTest, ClosesWhenItsWindowChangesItsWidthOrItsHeight) {
    for (const QSize size : {QSize(400, 640), QSize(400, 500)}) {
        open();
        window().resize(size);
        settle();
        EXPECT_FALSE(isShown("Sources"));
    }
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

TEST_F(GumMenuPopupTest, StaysInsideASmallWindow) {
    window().resize(300, 200);
    menu.setItems(entries(50));
    settle();
    open();
    const QQuickItem& view = find("Sources");
    const QRectF shown = view.mapRectToScene({0, 0, view.width(), view.height()});
    EXPECT_TRUE(QRectF(0, 0, 300, 200).contains(shown));
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
