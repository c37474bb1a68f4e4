#include "ui/support/ItemSearch.h"

#include "ui/support/Spoken.h"

#include <QQuickItem>

namespace velmora {

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

} // namespace velmora
