// ItemSearch.h: finds the items of a scene.
#pragma once

#include <QString>
#include <functional>
#include <vector>

class QQuickItem;
class QQuickWindow;

namespace velmora {

/// The root item of a window, then those of the pop-ups that stand over it.
[[nodiscard]] std::vector<QQuickItem*> contentsOf(QQuickWindow& window);

/// Every item below `root`, itself included, that is shown and satisfies `wanted`; front to back
/// does not matter, parents come before children.
[[nodiscard]] std::vector<QQuickItem*> visibleItems(QQuickItem& root,
                                                    const std::function<bool(QQuickItem&)>& wanted);

/// The same in a window and then in the pop-ups that stand over it.
[[nodiscard]] std::vector<QQuickItem*> visibleItems(QQuickWindow& window,
                                                    const std::function<bool(QQuickItem&)>& wanted);

/// Whether it is a text, and says something.
[[nodiscard]] bool isText(const QQuickItem& item);

/// The first visible item with this objectName, else the first that a screen reader calls so;
/// none = nullptr.
[[nodiscard]] QQuickItem* findItem(QQuickItem& root, const QString& name);
/// The same in a window and then in the pop-ups that stand over it.
[[nodiscard]] QQuickItem* findItem(QQuickWindow& window, const QString& name);

} // namespace velmora
