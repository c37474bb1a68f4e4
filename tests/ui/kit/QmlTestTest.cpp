#include "ui/support/QmlTest.h"

#include "ui/support/Spoken.h"

namespace velmora {

namespace {

using namespace std::chrono_literals;

TEST_F(QmlTest, MovesAnimationsAndTimersWithItsOwnClockOnly) {
    QQuickItem& item = show(R"(Item {
        property int ticks
        Timer { interval: 100; running: true; repeat: true; onTriggered: parent.ticks++ }
        NumberAnimation on x { from: 0; to: 50; duration: 500 }
    })");
    settle();
    EXPECT_EQ(item.property("ticks"), 0);

    advance(250ms);
    EXPECT_EQ(item.property("ticks"), 2);
    EXPECT_NEAR(item.x(), 25, 1);

    advance(1000ms);
    EXPECT_EQ(item.x(), 50);
}

TEST_F(QmlTest, FormsADoubleClickOnlyWithinTheInterval) {
    QQuickItem& area = show(R"(MouseArea {
        property int doubles
        width: 100; height: 100
        onDoubleClicked: doubles++
    })");

    pointer().doubleClick(area, {50, 50});
    EXPECT_EQ(area.property("doubles"), 1);

    pointer().click(area);
    pointer().click(area);
    EXPECT_EQ(area.property("doubles"), 1);
}

TEST_F(QmlTest, FindsItemsByObjectNameAndBySpokenName) {
    show(R"(Item {
        width: 100; height: 100
        Rectangle { objectName: "quiet" }
        Rectangle { Accessible.role: Accessible.Button; Accessible.name: "Ajouter" }
        Rectangle { objectName: "hidden"; visible: false }
    })");

    EXPECT_EQ(find("quiet").objectName(), "quiet");
    EXPECT_EQ(spokenRole(find("Ajouter")), QAccessible::Button);
    EXPECT_FALSE(isShown("hidden"));
}

TEST_F(QmlTest, SeesTheColoursOfTheAppearance) {
    QQuickItem& item = show("Rectangle { width: 20; height: 20; color: Theme.paper }");
    EXPECT_EQ(colorAt(item, {10, 10}), QColor(0xFF, 0xFB, 0xF0));

    settings.setAppearance("dark");
    EXPECT_EQ(colorAt(item, {10, 10}), QColor(0x17, 0x32, 0x3C));
}

TEST_F(QmlTest, TypesIntoWhatHasTheFocus) {
    QQuickItem& input = show("TextInput { focus: true; width: 100 }");
    type("abc");
    EXPECT_EQ(input.property("text"), "abc");
}

} // namespace

} // namespace velmora
