// GumMenuModel.h: a menu as the list of the rows that are unfolded now.
#pragma once

#include "ui/kit/menu/GumMenuItem.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>
#include <set>
#include <vector>

namespace velmora {

/// The tree of items, flattened: the children of an unfolded item follow it, one level further in.
/// Unfolding inserts rows and folding removes them; only new items reset the model.
///
/// Threads: main.
class GumMenuModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT

public:
    /// In the order of `GumMenuItem::Kind`.
    enum Kind { Action, Header, Separator };
    Q_ENUM(Kind)

    enum Role {
        KindRole = Qt::UserRole,
        TitleRole,
        IconRole,
        SymbolRole,
        CheckedRole,
        PlayingRole,
        EnabledRole,
        IndentRole, ///< points
        ExpandableRole,
        ExpandedRole,
        ActsRole, ///< choosing it does more than unfolding it
        DeletableRole,
    };

    static constexpr int indentStep = 16; // points a level

    explicit GumMenuModel(QObject* parent = nullptr) : QAbstractListModel(parent) {}

    /// Replaces everything. Items that were unfolded stay so, known by their id.
    void setItems(std::vector<GumMenuItem> items);
    [[nodiscard]] const std::vector<GumMenuItem>& items() const { return items_; }

    /// Chooses the row: it runs its action and then dismisses the menu; one that only has children
    /// folds or unfolds. Nothing happens on a row that cannot be chosen.
    Q_INVOKABLE void activate(int row);
    /// Runs what the row's delete button does; the menu stays.
    Q_INVOKABLE void deleteRow(int row);
    /// Unfolds or folds a row with children; nothing on any other.
    Q_INVOKABLE void setExpanded(int row, bool expanded);
    Q_INVOKABLE void toggleExpanded(int row);

    Q_INVOKABLE [[nodiscard]] bool isChoosable(int row) const;
    /// The next row that can be chosen, from `row` on in steps of `step` (1 or -1), `row` itself
    /// excluded; -1 where there is none.
    Q_INVOKABLE [[nodiscard]] int choosableAfter(int row, int step) const;
    /// The next row that can be chosen and whose title begins with `typed`, `from` included, going
    /// round; -1 where there is none. Case and accents do not matter.
    Q_INVOKABLE [[nodiscard]] int choosableByPrefix(const QString& typed, int from) const;
    /// The row under which this one was unfolded, -1 at the top level.
    Q_INVOKABLE [[nodiscard]] int parentRow(int row) const;
    /// The first row that is the current choice, else -1.
    Q_INVOKABLE [[nodiscard]] int checkedRow() const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    /// After every view has taken the reset in, so that one can go back to where it was.
    void itemsReplaced();
    /// A choice was made: close the surrounding pop-up.
    void dismissed();

private:
    /// Points into items_, which changes only as a whole.
    struct Row {
        const GumMenuItem* item;
        int level;
    };
    using Rows = std::vector<Row>;

    [[nodiscard]] const GumMenuItem* at(int row) const;
    void flatten(const std::vector<GumMenuItem>& items, int level, Rows& into) const;
    void expand(int row);
    void collapse(int row);
    void tellExpanded(int row);

    std::vector<GumMenuItem> items_;
    std::set<GumMenuItemId> expanded_;
    Rows rows_;
};

} // namespace velmora
