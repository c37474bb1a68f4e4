#include "ui/support/QmlTest.h"
#include "ui/support/Spoken.h"

namespace velmora {

namespace {

class GumDropdownTest : public QmlTest {
protected:
    QStringList picks() { return dropdown.property("picks").toStringList(); }
    bool isOpen() { return dropdown.property("open").toBool(); }

    QQuickItem& dropdown = show(R"(GumDropdown {
        property var picks: []
        name: "Apparence"
        x: 20; y: 20
        options: [{tag: "auto", label: "Auto"}, {tag: "light", label: "Clair"},
                  {tag: "dark", label: "Sombre"}]
        current: "light"
        onPicked: tag => picks = picks.concat(tag)
    })");
};

TEST_F(GumDropdownTest, ShowsTheLabelOfTheCurrentTag) {
    EXPECT_EQ(dropdown.property("label"), "Clair");
    dropdown.setProperty("current", "Light");
    EXPECT_EQ(dropdown.property("label"), "") << "tags are compared exactly";
}

TEST_F(GumDropdownTest, ATapOpensTheListWithTheCurrentOneChecked) {
    pointer().click(dropdown);
    settle();
    EXPECT_TRUE(isOpen());
    EXPECT_TRUE(spokenState(find("Clair")).checked);
    EXPECT_FALSE(spokenState(find("Sombre")).checked);
}

TEST_F(GumDropdownTest, StaysDarkenedWhileItsListIsOpen) {
    const QPointF spot(4, 14);
    const QColor calm = colorAt(dropdown, spot);
    key(Qt::Key_Tab);
    key(Qt::Key_Down);
    EXPECT_NE(colorAt(dropdown, spot), calm);
    key(Qt::Key_Escape);
    EXPECT_EQ(colorAt(dropdown, spot), calm);
}

TEST_F(GumDropdownTest, AChoiceIsAnnouncedAndClosesTheList) {
    pointer().click(dropdown);
    settle();
    pointer().click(find("Sombre"));
    settle();
    EXPECT_EQ(picks(), QStringList("dark"));
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(dropdown.property("current"), "light") << "it does not change by itself";
}

TEST_F(GumDropdownTest, WorksWithTheKeyboardAlone) {
    key(Qt::Key_Tab);
    key(Qt::Key_Down);
    ASSERT_TRUE(isOpen());
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    EXPECT_EQ(picks(), QStringList("dark"));
    EXPECT_TRUE(dropdown.hasActiveFocus());
}

TEST_F(GumDropdownTest, IsAComboBoxForAScreenReader) {
    EXPECT_EQ(spokenRole(dropdown), QAccessible::ComboBox);
    EXPECT_EQ(spokenName(dropdown), "Apparence");
    EXPECT_EQ(spokenDescription(dropdown), "Clair");
}

TEST_F(GumDropdownTest, DoesNotOpenWhileDisabled) {
    dropdown.setEnabled(false);
    pointer().click(dropdown);
    EXPECT_FALSE(isOpen());
    EXPECT_NEAR(dropdown.opacity(), 0.4, 1e-9);
}

} // namespace

} // namespace velmora
