#include "ui/support/ItemSearch.h"

#include "ui/support/Spoken.h"

#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>

namespace velmora {

std::vector<QQuickItem*> contentsOf(QQuickWindow& window) {
    std::vector<QQuickItem*> contents{window.contentItem()};
    for (QWindow* const other : QGuiApplication::topLevelWindows()) {
        auto* const popup = qobject_cast<QQuickWindow*>(other);
        if (popup != nullptr && popup->isVisible() && popup->transientParent() == &window) {
            contents.push_back(popup->contentItem());
        }
    }
    return contents;
}

std::vector<QQuickItem*> visibleItems(QQuickItem& root,
                                      const std::function<bool(QQuickItem&)>& wanted) {
    std::vector<QQuickItem*> found;
    if (!root.isVisible()) {
        return found;
    }
    if (wanted(root)) {
        found.push_back(&root);
    }
    for (QQuickItem* child : root.childItems()) {
        const auto below = visibleItems(*child, wanted);
        found.insert(found.end(), below.begin(), below.end());
    }
    return found;
}

std::vector<QQuickItem*> visibleItems(QQuickWindow& window,
                                      const std::function<bool(QQuickItem&)>& wanted) {
    std::vector<QQuickItem*> found;
    for (QQuickItem* const content : contentsOf(window)) {
        const auto inside = visibleItems(*content, wanted);
        found.insert(found.end(), inside.begin(), inside.end());
    }
    return found;
}

bool isText(const QQuickItem& item) {
    return item.inherits("QQuickText") && !item.property("text").toString().isEmpty();
}

QQuickItem* findItem(QQuickItem& root, const QString& name) {
    const auto named =
        visibleItems(root, [&](QQuickItem& item) { return item.objectName() == name; });
    if (!named.empty()) {
        return named.front();
    }
    const auto spoken =
        visibleItems(root, [&](QQuickItem& item) { return spokenName(item) == name; });
    return spoken.empty() ? nullptr : spoken.front();
}

QQuickItem* findItem(QQuickWindow& window, const QString& name) {
    for (QQuickItem* const content : contentsOf(window)) {
        if (QQuickItem* const found = findItem(*content, name)) {
            return found;
        }
    }
    return nullptr;
}

} // namespace velmora
