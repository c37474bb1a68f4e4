#include "ui/kit/menu/GumMenuModel.h"

#include "ui/kit/menu/FoldedText.h"

#include <QPointer>
#include <algorithm>
#include <utility>

namespace velmora {

namespace {

static_assert(int(GumMenuItem::Kind::action) == GumMenuModel::Action &&
              int(GumMenuItem::Kind::header) == GumMenuModel::Header &&
              int(GumMenuItem::Kind::separator) == GumMenuModel::Separator);

} // namespace

void GumMenuModel::setItems(std::vector<GumMenuItem> items) {
    beginResetModel();
    items_ = std::move(items);
    rows_.clear();
    flatten(items_, 0, rows_);
    endResetModel();
    Q_EMIT itemsReplaced();
}

void GumMenuModel::activate(int row) {
    if (!isChoosable(row)) {
        return;
    }
    const GumMenuItem& item = *at(row);
    if (!item.children.empty() && !item.actsWithChildren) {
        toggleExpanded(row);
        return;
    }
    // The action may fill this menu anew, or end it.
    const auto action = item.action;
    const QPointer<GumMenuModel> self(this);
    if (action) {
        action();
    }
    if (self) {
        Q_EMIT dismissed();
    }
}

void GumMenuModel::toggleExpanded(int row) {
    if (const GumMenuItem* const item = at(row)) {
        setExpanded(row, !expanded_.contains(item->id));
    }
}

void GumMenuModel::deleteRow(int row) {
    if (!isChoosable(row)) {
        return;
    }
    if (const auto onDelete = at(row)->onDelete) {
        onDelete();
    }
}

void GumMenuModel::setExpanded(int row, bool expanded) {
    if (!isChoosable(row) || at(row)->children.empty() ||
        expanded_.contains(at(row)->id) == expanded) {
        return;
    }
    if (expanded) {
        expand(row);
    } else {
        collapse(row);
    }
    tellExpanded(row);
}

int GumMenuModel::choosableAfter(int row, int step) const {
    for (int next = row + step; next >= 0 && next < rowCount(); next += step) {
        if (isChoosable(next)) {
            return next;
        }
    }
    return -1;
}

int GumMenuModel::choosableByPrefix(const QString& typed, int from) const {
    const int count = rowCount();
    const QString wanted = foldedText(typed);
    for (int step = 0; step < count; ++step) {
        const int row = (std::max(from, 0) + step) % count;
        if (isChoosable(row) && foldedText(at(row)->title).startsWith(wanted)) {
            return row;
        }
    }
    return -1;
}

int GumMenuModel::parentRow(int row) const {
    if (at(row) == nullptr) {
        return -1;
    }
    const int level = rows_[std::size_t(row)].level;
    int above = row - 1;
    while (above >= 0 && rows_[std::size_t(above)].level >= level) {
        --above;
    }
    return above;
}

int GumMenuModel::checkedRow() const {
    const auto found =
        std::ranges::find_if(rows_, [](const Row& row) { return row.item->checked; });
    return found == rows_.end() ? -1 : int(found - rows_.begin());
}

int GumMenuModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(rows_.size());
}

QVariant GumMenuModel::data(const QModelIndex& index, int role) const {
    const GumMenuItem* item = at(index.row());
    if (item == nullptr) {
        return {};
    }
    switch (role) {
    case KindRole:
        return int(item->kind);
    case TitleRole:
        return item->title;
    case IconRole:
        return item->icon;
    case SymbolRole:
        return item->symbol;
    case CheckedRole:
        return item->checked;
    case PlayingRole:
        return item->playing;
    case EnabledRole:
        return item->enabled;
    case IndentRole:
        return rows_[std::size_t(index.row())].level * indentStep;
    case ExpandableRole:
        return !item->children.empty();
    case ExpandedRole:
        return !item->children.empty() && expanded_.contains(item->id);
    case ActsRole:
        return item->children.empty() || item->actsWithChildren;
    case DeletableRole:
        return bool(item->onDelete);
    default:
        return {};
    }
}

QHash<int, QByteArray> GumMenuModel::roleNames() const {
    return {
        {KindRole, "kind"},
        {TitleRole, "title"},
        {IconRole, "icon"},
        {SymbolRole, "symbol"},
        {CheckedRole, "checked"},
        {PlayingRole, "playing"},
        {EnabledRole, "enabled"},
        {IndentRole, "indent"},
        {ExpandableRole, "expandable"},
        {ExpandedRole, "expanded"},
        {ActsRole, "acts"},
        {DeletableRole, "deletable"},
    };
}

const GumMenuItem* GumMenuModel::at(int row) const {
    return row >= 0 && row < rowCount() ? rows_[std::size_t(row)].item : nullptr;
}

bool GumMenuModel::isChoosable(int row) const {
    const GumMenuItem* item = at(row);
    return item != nullptr && item->kind == GumMenuItem::Kind::action && item->enabled;
}

void GumMenuModel::flatten(const std::vector<GumMenuItem>& items, int level, Rows& into) const {
    for (const GumMenuItem& item : items) {
        into.push_back({&item, level});
        if (expanded_.contains(item.id)) {
            flatten(item.children, level + 1, into);
        }
    }
}

void GumMenuModel::expand(int row) {
    const Row parent = rows_[std::size_t(row)];
    expanded_.insert(parent.item->id);
    Rows shown;
    flatten(parent.item->children, parent.level + 1, shown);
    beginInsertRows({}, row + 1, row + int(shown.size()));
    rows_.insert(rows_.begin() + row + 1, shown.begin(), shown.end());
    endInsertRows();
}

void GumMenuModel::collapse(int row) {
    const Row parent = rows_[std::size_t(row)];
    expanded_.erase(parent.item->id);
    const auto first = rows_.begin() + row + 1;
    const auto last = std::find_if(
        first, rows_.end(), [&](const Row& below) { return below.level <= parent.level; });
    beginRemoveRows({}, row + 1, row + int(last - first));
    rows_.erase(first, last);
    endRemoveRows();
}

void GumMenuModel::tellExpanded(int row) {
    Q_EMIT dataChanged(index(row), index(row), {ExpandedRole});
}

} // namespace velmora
