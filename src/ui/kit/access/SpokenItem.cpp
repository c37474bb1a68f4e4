#include "ui/kit/access/SpokenItem.h"

#include "ui/kit/access/SpokenLevel.h"
#include "ui/kit/access/SpokenLine.h"
#include "ui/kit/meters/LevelBar.h"

#include <QQuickWindow>

namespace velmora {

namespace {

QAccessibleInterface* spoken(const QString& className, QObject* object) {
    auto* const item = qobject_cast<QQuickItem*>(object);
    if (item == nullptr) {
        return nullptr;
    }
    if (className == QLatin1String("QQuickTextInput")) {
        return new SpokenLine(*item);
    }
    if (className == QLatin1String(LevelBar::staticMetaObject.className())) {
        return new SpokenLevel(static_cast<LevelBar&>(*item));
    }
    return nullptr;
}

} // namespace

void installSpokenItems() {
    QAccessible::installFactory(spoken); // once: Qt leaves a known one out
}

QWindow* SpokenItem::window() const {
    return item().window();
}

QRect SpokenItem::rect() const {
    if (item().window() == nullptr) {
        return {};
    }
    const QRectF inWindow = item().mapRectToScene(item().boundingRect());
    return {item().window()->mapToGlobal(inWindow.topLeft().toPoint()), inWindow.size().toSize()};
}

QAccessibleInterface* SpokenItem::parent() const {
    for (QQuickItem* above = item().parentItem(); above != nullptr; above = above->parentItem()) {
        if (auto* const interface = QAccessible::queryAccessibleInterface(above)) {
            return interface;
        }
    }
    return QAccessible::queryAccessibleInterface(item().window());
}

QString SpokenItem::text(QAccessible::Text kind) const {
    return kind == QAccessible::Name ? item().property("spokenName").toString() : QString();
}

QAccessible::State SpokenItem::state() const {
    QAccessible::State state;
    state.invisible = !item().isVisible();
    state.disabled = !item().isEnabled();
    state.focusable = item().activeFocusOnTab();
    state.focused = item().hasActiveFocus();
    return state;
}

} // namespace velmora
