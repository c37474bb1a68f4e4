#include "ui/kit/menu/GumMenuModel.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace velmora {

namespace {

using Kind = GumMenuItem::Kind;

class GumMenuModelTest : public testing::Test {
protected:
    GumMenuItem plain(const QString& title) {
        return {.title = title, .action = [this, title] { happened.append(title); }};
    }
    /// Header, "Firefox", separator, "Interface" with two children, a disabled entry, "Écouteurs".
    std::vector<GumMenuItem> sources() {
        GumMenuItem interface = plain("Interface");
        interface.children = {plain("Interface 1-2"), plain("Interface 3-4")};
        GumMenuItem gone = plain("Gone");
        gone.enabled = false;
        gone.onDelete = [this] { happened.append("deleted"); };
        return {{.kind = Kind::header, .title = "Applications"},
                plain("Firefox"),
                {.kind = Kind::separator},
                interface,
                gone,
                plain(QStringLiteral("Écouteurs"))};
    }
    QVariant at(int row, GumMenuModel::Role role) { return menu.data(menu.index(row), role); }
    QStringList titles() {
        QStringList all;
        for (int row = 0; row < menu.rowCount(); ++row) {
            all.append(at(row, GumMenuModel::TitleRole).toString());
        }
        return all;
    }

    QStringList happened;
    GumMenuModel menu;
    QSignalSpy dismissals{&menu, &GumMenuModel::dismissed};
    QSignalSpy resets{&menu, &GumMenuModel::modelReset};
};

TEST(GumMenuItemIdentity, IsFreshForEachItemAndKeptByCopies) {
    const GumMenuItem first;
    const GumMenuItem second;
    const GumMenuItem copy = first; // NOLINT(performance-unnecessary-copy-initialization): the copy
    EXPECT_NE(first.id, second.id);
    EXPECT_EQ(copy.id, first.id);
}

TEST_F(GumMenuModelTest, ShowsTheTopLevelFoldedAtIndentZero) {
    menu.setItems(sources());

    EXPECT_EQ(titles(),
              QStringList({"Applications", "Firefox", "", "Interface", "Gone", "Écouteurs"}));
    EXPECT_EQ(at(3, GumMenuModel::IndentRole), 0);
    EXPECT_EQ(at(3, GumMenuModel::ExpandableRole), true);
    EXPECT_EQ(at(3, GumMenuModel::ExpandedRole), false);
    EXPECT_EQ(at(0, GumMenuModel::KindRole), int(GumMenuModel::Header));
    EXPECT_EQ(at(2, GumMenuModel::KindRole), int(GumMenuModel::Separator));
}

TEST_F(GumMenuModelTest, CarriesEveryFieldOfAnItem) {
    menu.setItems({{.title = "Firefox",
                    .icon = "image://application/firefox",
                    .symbol = "mic",
                    .checked = true,
                    .playing = true,
                    .enabled = false,
                    .onDelete = [] {}}});

    EXPECT_EQ(at(0, GumMenuModel::IconRole), "image://application/firefox");
    EXPECT_EQ(at(0, GumMenuModel::SymbolRole), "mic");
    EXPECT_EQ(at(0, GumMenuModel::CheckedRole), true);
    EXPECT_EQ(at(0, GumMenuModel::PlayingRole), true);
    EXPECT_EQ(at(0, GumMenuModel::EnabledRole), false);
    EXPECT_EQ(at(0, GumMenuModel::DeletableRole), true);
    EXPECT_EQ(at(0, GumMenuModel::ExpandableRole), false);
}

TEST_F(GumMenuModelTest, RunsTheActionBeforeItDismisses) {
    menu.setItems({{.title = "Firefox",
                    .action = [this] { happened.append(QString::number(dismissals.count())); }}});

    menu.activate(0);

    EXPECT_EQ(happened, QStringList("0"));
    EXPECT_EQ(dismissals.count(), 1);
}

TEST_F(GumMenuModelTest, DismissesAfterAnEntryWithoutAction) {
    menu.setItems({{.title = "Nothing"}});
    menu.activate(0);
    EXPECT_EQ(dismissals.count(), 1);
}

TEST_F(GumMenuModelTest, UnfoldsInPlaceInsteadOfActing) {
    menu.setItems(sources());
    resets.clear();
    QSignalSpy inserted(&menu, &GumMenuModel::rowsInserted);

    menu.activate(3);

    EXPECT_EQ(titles().mid(3, 3), QStringList({"Interface", "Interface 1-2", "Interface 3-4"}));
    EXPECT_EQ(at(4, GumMenuModel::IndentRole), GumMenuModel::indentStep);
    EXPECT_EQ(at(3, GumMenuModel::ExpandedRole), true);
    EXPECT_EQ(inserted.count(), 1);
    EXPECT_EQ(resets.count(), 0);
    EXPECT_TRUE(happened.isEmpty());
    EXPECT_EQ(dismissals.count(), 0);
}

TEST_F(GumMenuModelTest, ActsAndStillUnfoldsWhereBothAreAsked) {
    auto items = sources();
    items[3].actsWithChildren = true;
    menu.setItems(std::move(items));
    EXPECT_EQ(at(3, GumMenuModel::ActsRole), true);

    menu.toggleExpanded(3);
    EXPECT_EQ(at(3, GumMenuModel::ExpandedRole), true);
    menu.activate(3);

    EXPECT_EQ(happened, QStringList("Interface"));
    EXPECT_EQ(dismissals.count(), 1);
    EXPECT_EQ(at(3, GumMenuModel::ExpandedRole), true);
}

TEST_F(GumMenuModelTest, FoldsAgainAtTheSecondTap) {
    menu.setItems(sources());
    const QStringList folded = titles();

    menu.activate(3);
    menu.activate(3);

    EXPECT_EQ(titles(), folded);
    EXPECT_EQ(at(3, GumMenuModel::ExpandedRole), false);
}

TEST_F(GumMenuModelTest, FoldsWhatIsUnfoldedInsideAndRemembersIt) {
    GumMenuItem outer = plain("outer");
    GumMenuItem inner = plain("inner");
    inner.children = {plain("deepest")};
    outer.children = {inner};
    menu.setItems({outer, plain("after")});
    menu.activate(0);
    menu.activate(1);
    EXPECT_EQ(at(2, GumMenuModel::IndentRole), 2 * GumMenuModel::indentStep);

    menu.activate(0);
    EXPECT_EQ(titles(), QStringList({"outer", "after"}));

    menu.activate(0);
    EXPECT_EQ(titles(), QStringList({"outer", "inner", "deepest", "after"}));
}

TEST_F(GumMenuModelTest, NeverChoosesCaptionsRulesAndDisabledEntries) {
    menu.setItems(sources());

    for (const int row : {-1, 0, 2, 4, 6}) {
        menu.activate(row);
        menu.deleteRow(row);
    }

    EXPECT_TRUE(happened.isEmpty());
    EXPECT_EQ(dismissals.count(), 0);
}

TEST_F(GumMenuModelTest, DeletesWithoutDismissing) {
    menu.setItems({{.title = "Podcast", .onDelete = [this] { happened.append("deleted"); }}});

    menu.deleteRow(0);

    EXPECT_EQ(happened, QStringList("deleted"));
    EXPECT_EQ(dismissals.count(), 0);
}

TEST_F(GumMenuModelTest, MayBeFilledAnewByTheActionItRuns) {
    menu.setItems({{.title = "old", .action = [this] {
                        const QString captured = "still here";
                        menu.setItems({plain("new")});
                        happened.append(captured);
                    }}});

    menu.activate(0);

    EXPECT_EQ(happened, QStringList("still here"));
    EXPECT_EQ(titles(), QStringList("new"));
}

TEST_F(GumMenuModelTest, MayBeDestroyedByTheActionItRuns) {
    auto doomed = std::make_unique<GumMenuModel>();
    doomed->setItems({{.title = "end", .action = [&] { doomed.reset(); }}});
    doomed->activate(0);
    EXPECT_EQ(doomed, nullptr);
}

TEST_F(GumMenuModelTest, StepsOverWhatCannotBeChosen) {
    menu.setItems(sources());

    EXPECT_EQ(menu.choosableAfter(-1, 1), 1);
    EXPECT_EQ(menu.choosableAfter(1, 1), 3);
    EXPECT_EQ(menu.choosableAfter(3, 1), 5);
    EXPECT_EQ(menu.choosableAfter(5, 1), -1);
    EXPECT_EQ(menu.choosableAfter(menu.rowCount(), -1), 5);
    EXPECT_EQ(menu.choosableAfter(1, -1), -1);
}

TEST_F(GumMenuModelTest, FindsATypedBeginningWithoutCaseAndAccents) {
    menu.setItems(sources());

    EXPECT_EQ(menu.choosableByPrefix("ecou", 0), 5);
    EXPECT_EQ(menu.choosableByPrefix("F", 0), 1);
    EXPECT_EQ(menu.choosableByPrefix("f", 2), 1) << "goes round";
    EXPECT_EQ(menu.choosableByPrefix("gone", 0), -1) << "cannot be chosen";
    EXPECT_EQ(menu.choosableByPrefix("applications", 0), -1) << "a caption";
}

TEST_F(GumMenuModelTest, KnowsTheRowThatAChildWasUnfoldedUnder) {
    menu.setItems(sources());
    menu.activate(3);

    EXPECT_EQ(menu.parentRow(4), 3);
    EXPECT_EQ(menu.parentRow(5), 3);
    EXPECT_EQ(menu.parentRow(6), -1);
    EXPECT_EQ(menu.parentRow(-1), -1);
}

TEST_F(GumMenuModelTest, KnowsTheCurrentChoice) {
    menu.setItems({plain("a"), {.title = "b", .checked = true}});
    EXPECT_EQ(menu.checkedRow(), 1);
    menu.setItems({plain("a")});
    EXPECT_EQ(menu.checkedRow(), -1);
}

} // namespace

} // namespace velmora
