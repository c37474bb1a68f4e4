// ApplicationChooserModel.h: the installed applications as a list to search.
#pragma once

#include "platform/Applications.h"

#include <QAbstractListModel>
#include <QString>
#include <QtQml/qqmlregistration.h>
#include <cstddef>
#include <functional>
#include <vector>

namespace velmora {

/// Shows, sorted as the menus are, those whose name contains the filter; upper and lower case and
/// accents are alike.
///
/// Threads: main.
class ApplicationChooserModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the control window")
    Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY filterChanged)
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role { NameRole = Qt::UserRole, IconRole };

    using Chosen = std::function<void(const InstalledApplication&)>;

    /// `applications` outlives this object.
    explicit ApplicationChooserModel(const Applications& applications, QObject* parent = nullptr);

    /// Reads what is installed now and forgets the filter. `chosen` is told of one choice at most.
    void open(Chosen chosen);

    [[nodiscard]] const QString& filter() const { return filter_; }
    void setFilter(const QString& filter);
    [[nodiscard]] int count() const { return static_cast<int>(rows_.size()); }
    Q_INVOKABLE void choose(int row);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void filterChanged();
    void countChanged();

private:
    struct Entry {
        InstalledApplication application;
        QString name;
        QString foldedName; ///< as it is searched
    };

    [[nodiscard]] std::vector<std::size_t> matches() const;
    void show(const std::vector<std::size_t>& wanted);
    void insert(std::size_t row, std::size_t entry);
    void remove(std::size_t row);

    const Applications& applications_;
    Chosen chosen_;
    QString filter_;
    std::vector<Entry> entries_;
    std::vector<std::size_t> rows_; // into the entries, ascending
};

} // namespace velmora
