// SpokenLine.h: a line to type into, as a screen reader reads and edits it.
#pragma once

#include "ui/kit/access/SpokenItem.h"

#include <QAccessible>

namespace velmora {

/// The text, the caret and the selection of a TextInput. Positions count UTF-16 units.
///
/// Threads: main.
class SpokenLine final : public SpokenItem,
                         public QAccessibleTextInterface,
                         public QAccessibleEditableTextInterface,
                         public QAccessibleActionInterface {
public:
    explicit SpokenLine(QQuickItem& input) : SpokenItem(input) {}

    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::EditableText; }
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text kind, const QString& text) override;
    [[nodiscard]] QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    void selection(int index, int* start, int* end) const override;
    [[nodiscard]] int selectionCount() const override;
    void addSelection(int start, int end) override;
    void removeSelection(int index) override;
    void setSelection(int index, int start, int end) override;
    [[nodiscard]] int cursorPosition() const override;
    void setCursorPosition(int position) override;
    [[nodiscard]] QString text(int start, int end) const override;
    [[nodiscard]] int characterCount() const override;
    [[nodiscard]] QRect characterRect(int offset) const override;
    [[nodiscard]] int offsetAtPoint(const QPoint& point) const override;
    void scrollToSubstring(int start, int end) override;
    [[nodiscard]] QString attributes(int offset, int* start, int* end) const override;

    void deleteText(int start, int end) override;
    void insertText(int offset, const QString& text) override;
    void replaceText(int start, int end, const QString& text) override;

    [[nodiscard]] QStringList actionNames() const override { return {setFocusAction()}; }
    void doAction(const QString& name) override;
    [[nodiscard]] QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    [[nodiscard]] QString whole() const;
    [[nodiscard]] QRectF caretAt(int position) const; // in the item
    void select(int start, int end);
};

} // namespace velmora
