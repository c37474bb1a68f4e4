// ItemSearch.h: finds the items of a scene.
#pragma once

#include <QString>
#include <functional>
#include <vector>

class QQuickItem;

namespace velmora {

/// Every item below `root`, itself included, that is shown and satisfies `wanted`; front to back
/// does not matter, parents come before children.
[[nodiscard]] std::vector<QQuickItem*> visibleItems(QQuickItem& root,
                                                    const std::function<bool(QQuickItem&)>& wanted);

/// The first visible item with this objectName, else the first that a screen reader calls so;
/// none = nullptr.
[[nodiscard]] QQuickItem* findItem(QQuickItem& root, const QString& name);

} // namespace velmora
