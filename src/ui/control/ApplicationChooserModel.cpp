#include "ui/control/ApplicationChooserModel.h"

#include "capture/NameCompare.h"
#include "ui/control/SourceIcons.h"
#include "ui/control/TakeOver.h"
#include "ui/kit/menu/FoldedText.h"

#include <algorithm>
#include <utility>

namespace velmora {

namespace {

std::vector<InstalledApplication> sortedByName(std::vector<InstalledApplication> applications) {
    std::ranges::stable_sort(applications, {}, [](const InstalledApplication& application) {
        return collationKey(application.name);
    });
    return applications;
}

} // namespace

ApplicationChooserModel::ApplicationChooserModel(const Applications& applications, QObject* parent)
    : QAbstractListModel(parent), applications_(applications) {
}

void ApplicationChooserModel::open(Chosen chosen) {
    chosen_ = std::move(chosen);
    beginResetModel();
    entries_.clear();
    for (auto& application : sortedByName(applications_.allInstalled())) {
        const auto name = QString::fromStdString(application.name);
        entries_.push_back({std::move(application), name, foldedText(name)});
    }
    const bool hadFilter = takeOver(filter_, QString());
    rows_ = matches();
    endResetModel();
    if (hadFilter) {
        Q_EMIT filterChanged();
    }
    Q_EMIT countChanged();
}

void ApplicationChooserModel::setFilter(const QString& filter) {
    if (!takeOver(filter_, filter)) {
        return;
    }
    const int before = count();
    show(matches());
    Q_EMIT filterChanged();
    if (count() != before) {
        Q_EMIT countChanged();
    }
}

void ApplicationChooserModel::choose(int row) {
    if (row < 0 || row >= count()) {
        return;
    }
    const auto application = entries_[rows_[static_cast<std::size_t>(row)]].application;
    if (const auto chosen = std::exchange(chosen_, nullptr)) {
        chosen(application);
    }
}

int ApplicationChooserModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant ApplicationChooserModel::data(const QModelIndex& index, int role) const {
    if (index.row() < 0 || index.row() >= count()) {
        return {};
    }
    const Entry& entry = entries_[rows_[static_cast<std::size_t>(index.row())]];
    switch (role) {
    case NameRole:
        return entry.name;
    case IconRole:
        // Asked for the rows in sight only, so that a long list opens at once.
        return applicationIcon(applications_, entry.application.bundleID);
    default:
        return {};
    }
}

QHash<int, QByteArray> ApplicationChooserModel::roleNames() const {
    return {{NameRole, "name"}, {IconRole, "icon"}};
}

std::vector<std::size_t> ApplicationChooserModel::matches() const {
    const QString wanted = foldedText(filter_.trimmed());
    std::vector<std::size_t> found;
    for (std::size_t index = 0; index < entries_.size(); ++index) {
        if (entries_[index].foldedName.contains(wanted)) {
            found.push_back(index);
        }
    }
    return found;
}

void ApplicationChooserModel::show(const std::vector<std::size_t>& wanted) {
    std::size_t row = 0;
    for (const std::size_t entry : wanted) {
        while (row < rows_.size() && rows_[row] < entry) {
            remove(row);
        }
        if (row == rows_.size() || rows_[row] != entry) {
            insert(row, entry);
        }
        ++row;
    }
    while (row < rows_.size()) {
        remove(row);
    }
}

void ApplicationChooserModel::insert(std::size_t row, std::size_t entry) {
    const auto index = static_cast<int>(row);
    beginInsertRows({}, index, index);
    rows_.insert(rows_.begin() + index, entry);
    endInsertRows();
}

void ApplicationChooserModel::remove(std::size_t row) {
    const auto index = static_cast<int>(row);
    beginRemoveRows({}, index, index);
    rows_.erase(rows_.begin() + index);
    endRemoveRows();
}

} // namespace velmora
