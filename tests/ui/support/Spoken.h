// Spoken.h: what a screen reader hears of an item, and what it can do with it.
#pragma once

#include <QAccessible>
#include <QString>
#include <QVariant>

class QQuickItem;

namespace velmora {

/// Empty, or QAccessible::NoRole, for an item that a screen reader does not see.
[[nodiscard]] QString spokenName(QQuickItem& item);
[[nodiscard]] QString spokenDescription(QQuickItem& item);
[[nodiscard]] QAccessible::Role spokenRole(QQuickItem& item);
[[nodiscard]] QAccessible::State spokenState(QQuickItem& item);

/// The value of a slider; invalid where there is none.
[[nodiscard]] QVariant spokenValue(QQuickItem& item);
/// As a screen reader sets it. False where nothing can be set.
bool speakValue(QQuickItem& item, double value);

/// `name` is one of QAccessibleActionInterface's, as pressAction(). False where it is not offered.
bool speakAction(QQuickItem& item, const QString& name);

} // namespace velmora
