#include "ui/kit/menu/GumOptionsModel.h"

namespace velmora {

namespace {

QString tagOf(const QVariant& option) {
    return option.toMap().value(QStringLiteral("tag")).toString();
}

QString labelOf(const QVariant& option) {
    return option.toMap().value(QStringLiteral("label")).toString();
}

} // namespace

void GumOptionsModel::setOptions(const QVariantList& options, const QString& current) {
    std::vector<GumMenuItem> items;
    for (const QVariant& option : options) {
        const QString tag = tagOf(option);
        items.push_back({.title = labelOf(option),
                         .checked = tag == current,
                         .action = [this, tag] { Q_EMIT picked(tag); }});
    }
    setItems(std::move(items));
}

QString GumOptionsModel::label(const QVariantList& options, const QString& tag) {
    for (const QVariant& option : options) {
        if (tagOf(option) == tag) {
            return labelOf(option);
        }
    }
    return {};
}

} // namespace velmora
