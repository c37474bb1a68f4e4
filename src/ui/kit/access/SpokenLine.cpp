#include "ui/kit/access/SpokenLine.h"

#include <QQuickWindow>
#include <algorithm>

namespace velmora {

QString SpokenLine::whole() const {
    return item().property("text").toString();
}

QString SpokenLine::text(QAccessible::Text kind) const {
    return kind == QAccessible::Value ? whole() : SpokenItem::text(kind);
}

void SpokenLine::setText(QAccessible::Text kind, const QString& text) {
    if (kind == QAccessible::Value) {
        item().setProperty("text", text);
    }
}

QAccessible::State SpokenLine::state() const {
    QAccessible::State state = SpokenItem::state();
    state.editable = true;
    state.selectableText = true;
    return state;
}

void* SpokenLine::interface_cast(QAccessible::InterfaceType type) {
    switch (type) {
    case QAccessible::TextInterface:
        return static_cast<QAccessibleTextInterface*>(this);
    case QAccessible::EditableTextInterface:
        return static_cast<QAccessibleEditableTextInterface*>(this);
    case QAccessible::ActionInterface:
        return static_cast<QAccessibleActionInterface*>(this);
    default:
        return SpokenItem::interface_cast(type);
    }
}

void SpokenLine::selection(int index, int* start, int* end) const {
    const bool isThere = index == 0 && selectionCount() > 0;
    *start = isThere ? item().property("selectionStart").toInt() : 0;
    *end = isThere ? item().property("selectionEnd").toInt() : 0;
}

int SpokenLine::selectionCount() const {
    return item().property("selectedText").toString().isEmpty() ? 0 : 1;
}

void SpokenLine::addSelection(int start, int end) {
    select(start, end);
}

void SpokenLine::removeSelection(int) {
    QMetaObject::invokeMethod(&item(), "deselect");
}

void SpokenLine::setSelection(int index, int start, int end) {
    if (index == 0) {
        select(start, end);
    }
}

void SpokenLine::select(int start, int end) {
    QMetaObject::invokeMethod(&item(), "select", Q_ARG(int, start), Q_ARG(int, end));
}

int SpokenLine::cursorPosition() const {
    return item().property("cursorPosition").toInt();
}

void SpokenLine::setCursorPosition(int position) {
    item().setProperty("cursorPosition", position);
}

QString SpokenLine::text(int start, int end) const {
    return whole().mid(start, end - start);
}

int SpokenLine::characterCount() const {
    return int(whole().size());
}

QRectF SpokenLine::caretAt(int position) const {
    QRectF place;
    QMetaObject::invokeMethod(
        &item(), "positionToRectangle", Q_RETURN_ARG(QRectF, place), Q_ARG(int, position));
    return place;
}

QRect SpokenLine::characterRect(int offset) const {
    const QRectF from = caretAt(offset);
    const QRectF to = caretAt(std::min(offset + 1, characterCount()));
    const QRectF inWindow = item().mapRectToScene(
        QRectF(from.topLeft(), QSizeF(std::max(0.0, to.left() - from.left()), from.height())));
    return {item().window()->mapToGlobal(inWindow.topLeft().toPoint()), inWindow.size().toSize()};
}

int SpokenLine::offsetAtPoint(const QPoint& point) const {
    const QPointF inItem = item().mapFromGlobal(point);
    if (!item().contains(inItem)) {
        return -1;
    }
    int position = characterCount();
    while (position > 0 && caretAt(position).left() > inItem.x()) {
        --position;
    }
    return position;
}

void SpokenLine::scrollToSubstring(int start, int) {
    setCursorPosition(start); // the line shows where its caret is
}

QString SpokenLine::attributes(int, int* start, int* end) const {
    *start = 0;
    *end = characterCount();
    return {};
}

void SpokenLine::deleteText(int start, int end) {
    QMetaObject::invokeMethod(&item(), "remove", Q_ARG(int, start), Q_ARG(int, end));
}

void SpokenLine::insertText(int offset, const QString& text) {
    QMetaObject::invokeMethod(&item(), "insert", Q_ARG(int, offset), Q_ARG(QString, text));
}

void SpokenLine::replaceText(int start, int end, const QString& text) {
    deleteText(start, end);
    insertText(start, text);
}

void SpokenLine::doAction(const QString& name) {
    if (name == setFocusAction()) {
        item().forceActiveFocus(Qt::OtherFocusReason);
    }
}

} // namespace velmora
