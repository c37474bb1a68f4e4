// SpokenItem.h: what a screen reader is told of an item that Qt Quick says too little of.
#pragma once

#include <QAccessibleObject>
#include <QQuickItem>

namespace velmora {

/// A leaf of the tree. Its name is the item's property `spokenName`.
///
/// The item also has an `Accessible` in QML, which makes it part of the tree.
///
/// Threads: main.
class SpokenItem : public QAccessibleObject {
public:
    explicit SpokenItem(QQuickItem& item) : QAccessibleObject(&item) {}

    [[nodiscard]] QWindow* window() const override;
    [[nodiscard]] QRect rect() const override;
    [[nodiscard]] QAccessibleInterface* parent() const override;
    [[nodiscard]] QAccessibleInterface* child(int) const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    [[nodiscard]] QAccessible::State state() const override;

protected:
    [[nodiscard]] QQuickItem& item() const { return static_cast<QQuickItem&>(*object()); }
};

/// Lets screen readers know lines of text and levels by their classes here. Call it once in a
/// program, or more often.
void installSpokenItems();

} // namespace velmora
