#include "ui/support/Spoken.h"

#include <QQuickItem>

namespace velmora {

namespace {

QString textOf(QQuickItem& item, QAccessible::Text kind) {
    const auto* interface = QAccessible::queryAccessibleInterface(&item);
    return interface == nullptr ? QString() : interface->text(kind);
}

QAccessibleValueInterface* valueOf(QQuickItem& item) {
    auto* interface = QAccessible::queryAccessibleInterface(&item);
    return interface == nullptr ? nullptr : interface->valueInterface();
}

} // namespace

QString spokenName(QQuickItem& item) {
    return textOf(item, QAccessible::Name);
}

QString spokenDescription(QQuickItem& item) {
    return textOf(item, QAccessible::Description);
}

QAccessible::Role spokenRole(QQuickItem& item) {
    const auto* interface = QAccessible::queryAccessibleInterface(&item);
    return interface == nullptr ? QAccessible::NoRole : interface->role();
}

QAccessible::State spokenState(QQuickItem& item) {
    const auto* interface = QAccessible::queryAccessibleInterface(&item);
    return interface == nullptr ? QAccessible::State{} : interface->state();
}

QVariant spokenValue(QQuickItem& item) {
    const auto* value = valueOf(item);
    return value == nullptr ? QVariant() : value->currentValue();
}

bool speakValue(QQuickItem& item, double value) {
    auto* target = valueOf(item);
    if (target == nullptr) {
        return false;
    }
    target->setCurrentValue(value);
    return true;
}

bool speakAction(QQuickItem& item, const QString& name) {
    auto* interface = QAccessible::queryAccessibleInterface(&item);
    auto* actions = interface == nullptr ? nullptr : interface->actionInterface();
    if (actions == nullptr || !actions->actionNames().contains(name)) {
        return false;
    }
    actions->doAction(name);
    return true;
}

} // namespace velmora
