// DrawnItem.h: an item that a painter draws in the pixels of the window.
#pragma once

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

class QPainter;

namespace velmora {

/// What it draws lies on whole pixels, whatever the size of a point is: Qt's own shapes and painted
/// items are laid out in points, and an edge between two pixels, or a picture that is stretched to
/// them, shows steps. Without a graphics card it is drawn straight into the window, and needs no
/// memory; with one, into a texture.
///
/// It may stand in items that are scaled, and in none that are rotated.
///
/// Threads: main; `draw` on the thread that renders, while the main thread waits.
class DrawnItem : public QQuickItem {
    Q_OBJECT
    QML_ANONYMOUS

public:
    explicit DrawnItem(QQuickItem* parent = nullptr);

protected:
    /// Draws the item, antialiased.
    /// Units: the painter's are pixels; `place` is where the item is in them, on whole ones, and
    /// `scale` is how many a point has.
    virtual void draw(QPainter& painter, const QRectF& place, double scale) = 0;

    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void geometryChange(const QRectF& now, const QRectF& before) override;

private:
    friend class WindowDrawing;

    [[nodiscard]] QSGNode* texture(QSGNode* old);
    QMetaObject::Connection resizes_;
};

} // namespace velmora
