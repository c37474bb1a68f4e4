#include "ui/kit/menu/MenuFixture.h"

#include "ui/support/ItemSearch.h"
#include "ui/support/Spoken.h"

#include <QSignalSpy>

namespace velmora {

namespace {

class GumMenuViewTest : public MenuFixture {
protected:
    GumMenuViewTest() {
        menu.setItems(sources());
        view =
            &show("GumMenuView { property int dismissals; onDismiss: dismissals++; focus: true }",
                  {{"model", QVariant::fromValue(&menu)}});
        view->forceActiveFocus();
    }
    int dismissals() { return view->property("dismissals").toInt(); }
    std::vector<QQuickItem*> rows() {
        return visibleItems(
            *view, [](QQuickItem& item) { return spokenRole(item) == QAccessible::MenuItem; });
    }
    /// Something that belongs to the row, by its objectName.
    QQuickItem* partOf(const QString& row, const QString& part) {
        return findItem(find(row), part);
    }
    /// The title of the row that the keyboard is on.
    QString current() {
        QQuickItem* item = window().activeFocusItem();
        return item == nullptr ? QString() : spokenName(*item);
    }

    QQuickItem* view = nullptr;
};

TEST_F(GumMenuViewTest, IsAtLeast230WideAndAsHighAsItsRows) {
    EXPECT_EQ(view->width(), 230);
    EXPECT_LT(view->height(), 380);
    EXPECT_EQ(rows().size(), 4U);
}

TEST_F(GumMenuViewTest, IsWiderForALongTitle) {
    menu.setItems({entry("A device with a name that nobody would ever want to abbreviate")});
    settle();
    EXPECT_GT(view->implicitWidth(), 300);
}

TEST_F(GumMenuViewTest, IsAtMost380HighAndScrollsBeyond) {
    EXPECT_FALSE(isShown("scrollBar"));
    menu.setItems(entries(100));
    settle();
    EXPECT_EQ(view->implicitHeight(), 380);
    EXPECT_TRUE(isShown("scrollBar"));
}

TEST_F(GumMenuViewTest, MakesOnlyTheRowsThatAreSeen) {
    menu.setItems(entries(1000));
    settle();
    EXPECT_LT(rows().size(), 40U);
}

TEST_F(GumMenuViewTest, ATapRunsTheActionAndDismisses) {
    pointer().click(find("Firefox"));
    EXPECT_EQ(happened, QStringList("Firefox"));
    EXPECT_EQ(dismissals(), 1);
}

TEST_F(GumMenuViewTest, ATapOnAnEntryWithChildrenUnfoldsThemOneLevelFurtherIn) {
    pointer().click(find("Interface"));
    EXPECT_TRUE(isShown("Inputs 3-4"));
    EXPECT_EQ(find("Inputs 3-4").property("indent"), GumMenuModel::indentStep);
    EXPECT_EQ(find("Interface").property("indent"), 0);
    EXPECT_TRUE(happened.isEmpty());
    EXPECT_EQ(dismissals(), 0);

    pointer().click(find("Interface"));
    EXPECT_FALSE(isShown("Inputs 3-4"));
}

TEST_F(GumMenuViewTest, TheChevronPointsRightWhenFoldedAndDownWhenUnfolded) {
    EXPECT_EQ(partOf("Interface", "chevron")->property("name"), "chevron.right");
    pointer().click(find("Interface"));
    EXPECT_EQ(partOf("Interface", "chevron")->property("name"), "chevron.down");
}

TEST_F(GumMenuViewTest, AnEntryThatActsWithChildrenUnfoldsByItsChevron) {
    auto items = sources();
    items[3].actsWithChildren = true;
    menu.setItems(std::move(items));
    settle();

    pointer().click(*partOf("Interface", "unfold"));
    EXPECT_TRUE(isShown("Inputs 3-4"));
    EXPECT_EQ(dismissals(), 0);

    pointer().click(find("Interface"));
    EXPECT_EQ(happened, QStringList("Interface"));
    EXPECT_EQ(dismissals(), 1);
}

TEST_F(GumMenuViewTest, CaptionsAndDisabledEntriesDoNotAnswer) {
    pointer().click(find("Applications"));
    pointer().click(find("Gone"));
    EXPECT_TRUE(happened.isEmpty());
    EXPECT_EQ(dismissals(), 0);
}

TEST_F(GumMenuViewTest, MarksTheChoiceAndWhatPlays) {
    EXPECT_NE(partOf("Firefox", "checkmark"), nullptr);
    EXPECT_NE(partOf("Firefox", "playing"), nullptr);
    EXPECT_EQ(partOf("Firefox", "chevron"), nullptr);
    EXPECT_EQ(partOf("Interface", "checkmark"), nullptr);
    EXPECT_EQ(partOf("Interface", "playing"), nullptr);
}

TEST_F(GumMenuViewTest, OffersToDeleteOnlyUnderThePointer) {
    EXPECT_EQ(partOf("Podcast", "delete"), nullptr);

    pointer().moveTo(find("Podcast"), {30, 14});
    ASSERT_NE(partOf("Podcast", "delete"), nullptr);
    pointer().click(*partOf("Podcast", "delete"));

    EXPECT_EQ(happened, QStringList("delete Podcast"));
    EXPECT_EQ(dismissals(), 0);

    pointer().moveTo(find("Firefox"), {30, 14});
    EXPECT_EQ(partOf("Podcast", "delete"), nullptr);
    EXPECT_EQ(partOf("Firefox", "delete"), nullptr);
}

TEST_F(GumMenuViewTest, OffersToDeleteWhereTheKeyboardIs) {
    key(Qt::Key_End);
    EXPECT_NE(partOf("Podcast", "delete"), nullptr);
    key(Qt::Key_Home);
    EXPECT_EQ(partOf("Podcast", "delete"), nullptr);
}

TEST_F(GumMenuViewTest, TakesTheOfferBackWhenThePointerLeaves) {
    pointer().click(find("Applications")); // whoever uses the mouse is not at the keyboard
    pointer().moveTo(find("Podcast"), {30, 12});
    pointer().moveTo(find("Podcast"), {30, 14});
    EXPECT_NE(partOf("Podcast", "delete"), nullptr);
    pointer().moveTo(*view, {400, 600});
    EXPECT_EQ(current(), "Podcast");
    EXPECT_EQ(partOf("Podcast", "delete"), nullptr);
}

TEST_F(GumMenuViewTest, DimsWhatCannotBeChosen) {
    EXPECT_NEAR(find("Gone").opacity(), 0.4, 1e-9);
    EXPECT_EQ(find("Firefox").opacity(), 1.0);
}

TEST_F(GumMenuViewTest, BeginsAtTheCurrentChoice) {
    EXPECT_EQ(current(), "Firefox");
}

TEST_F(GumMenuViewTest, ArrowsGoFromEntryToEntry) {
    key(Qt::Key_Down);
    EXPECT_EQ(current(), "Interface");
    key(Qt::Key_Down);
    EXPECT_EQ(current(), "Podcast") << "a disabled entry is stepped over";
    key(Qt::Key_Down);
    EXPECT_EQ(current(), "Podcast");
    key(Qt::Key_Home);
    EXPECT_EQ(current(), "Firefox");
    key(Qt::Key_End);
    key(Qt::Key_Up);
    EXPECT_EQ(current(), "Interface");
}

TEST_F(GumMenuViewTest, ArrowsUnfoldAndFold) {
    key(Qt::Key_Down);
    key(Qt::Key_Right);
    EXPECT_TRUE(isShown("Inputs 1-2"));
    key(Qt::Key_Down);
    EXPECT_EQ(current(), "Inputs 1-2");
    key(Qt::Key_Left);
    EXPECT_EQ(current(), "Interface") << "from a child to what it was unfolded under";
    key(Qt::Key_Left);
    EXPECT_FALSE(isShown("Inputs 1-2"));
}

TEST_F(GumMenuViewTest, ReturnAndSpaceChoose) {
    key(Qt::Key_Return);
    key(Qt::Key_Space, {}, " ");
    EXPECT_EQ(happened, QStringList({"Firefox", "Firefox"}));
    EXPECT_EQ(dismissals(), 2);
}

TEST_F(GumMenuViewTest, LeavesShortcutsToTheWindow) {
    for (const auto modifier : {Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier}) {
        key(Qt::Key_Down, modifier);
        key(Qt::Key_Return, modifier);
        key(Qt::Key_P, modifier, "p");
        EXPECT_EQ(current(), "Firefox");
    }
    EXPECT_TRUE(happened.isEmpty());
    key(Qt::Key_Down, Qt::KeypadModifier);
    EXPECT_EQ(current(), "Interface");
}

TEST_F(GumMenuViewTest, DeleteDeletesAndEscapeDismisses) {
    key(Qt::Key_End);
    key(Qt::Key_Delete);
    EXPECT_EQ(happened, QStringList("delete Podcast"));
    key(Qt::Key_Escape);
    EXPECT_EQ(dismissals(), 1);
}

TEST_F(GumMenuViewTest, TypingGoesToTheEntryThatBeginsSo) {
    using namespace std::chrono_literals;
    type("po");
    EXPECT_EQ(current(), "Podcast");
    advance(1100ms);
    type("i");
    EXPECT_EQ(current(), "Interface");
    type("n");
    EXPECT_EQ(current(), "Interface");
}

TEST_F(GumMenuViewTest, AfterAPauseTypingBeginsANewWord) {
    using namespace std::chrono_literals;
    menu.setItems({entry("Alpha"), entry("Lute"), entry("Violin")});
    type("a");
    advance(1100ms);
    type("l");
    EXPECT_EQ(current(), "Lute");
}

TEST_F(GumMenuViewTest, APauseShorterThanASecondEndsNoWord) {
    using namespace std::chrono_literals;
    menu.setItems({entry("Alpha"), entry("Lute"), entry("Amber")});
    type("a");
    advance(900ms);
    type("m");
    advance(900ms);
    type("b");
    EXPECT_EQ(current(), "Amber");
}

TEST_F(GumMenuViewTest, ARepeatedLetterGoesOnToTheNext) {
    menu.setItems({entry("Alpha"), entry("Amber"), entry("Beta")});
    key(Qt::Key_End);
    type("a");
    EXPECT_EQ(current(), "Alpha");
    type("a");
    EXPECT_EQ(current(), "Amber");
    type("a");
    EXPECT_EQ(current(), "Alpha");
}

TEST_F(GumMenuViewTest, KeepsItsPlaceWhenItsItemsAreReplaced) {
    menu.setItems(entries(100));
    key(Qt::Key_End);
    const QString last = current();

    auto fewer = entries(100);
    fewer.erase(fewer.begin());
    menu.setItems(fewer);
    settle();

    EXPECT_EQ(last, "Entry 99");
    EXPECT_EQ(current(), "Entry 99");
}

TEST_F(GumMenuViewTest, StaysScrolledWhereItIsWhenItsItemsAreReplaced) {
    using namespace std::chrono_literals;
    menu.setItems(entries(100));
    settle();
    QQuickItem* const list = visibleItems(*view, [](QQuickItem& item) {
                                 return item.inherits("QQuickListView");
                             }).front();
    pointer().wheel(*view, {0, -1200});
    advance(2s);
    const double scrolled = list->property("contentY").toDouble();
    ASSERT_GT(scrolled, 100);

    menu.setItems(entries(100));
    settle();
    EXPECT_EQ(list->property("contentY").toDouble(), scrolled);
}

TEST_F(GumMenuViewTest, SpeaksItsRows) {
    EXPECT_EQ(spokenRole(*view), QAccessible::PopupMenu);
    EXPECT_TRUE(spokenState(find("Firefox")).checkable);
    EXPECT_TRUE(spokenState(find("Firefox")).checked);
    EXPECT_FALSE(spokenState(find("Podcast")).checkable);
    ASSERT_TRUE(speakAction(find("Firefox"), QAccessibleActionInterface::pressAction()));
    EXPECT_EQ(happened, QStringList("Firefox"));
}

} // namespace

} // namespace velmora
