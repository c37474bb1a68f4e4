// GumOptionsModel.h: the menu of a drop-down chooser.
#pragma once

#include "ui/kit/menu/GumMenuModel.h"

#include <QVariantList>

namespace velmora {

/// A list of options, one of them checked. Its base is named in full because Qt's tools take the
/// name as it is written.
///
/// Threads: main.
class GumOptionsModel : public velmora::GumMenuModel {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit GumOptionsModel(QObject* parent = nullptr) : GumMenuModel(parent) {}

    /// Fills the menu. @param options  objects with `tag` and `label`, both text
    /// @param current  the tag of the entry to check, compared exactly
    Q_INVOKABLE void setOptions(const QVariantList& options, const QString& current);
    /// The label that belongs to a tag; empty for a tag that is not among the options.
    Q_INVOKABLE [[nodiscard]] static QString label(const QVariantList& options, const QString& tag);

Q_SIGNALS:
    void picked(const QString& tag);
};

} // namespace velmora
