// DashedBorder.h: the outline of a place that is still empty.
#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace velmora {

/// A dashed rounded rectangle, one and a half points thick, inside the item's bounds.
///
/// Threads: main; `paint` runs while the main thread waits.
class DashedBorder : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY changed)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY changed)

public:
    explicit DashedBorder(QQuickItem* parent = nullptr);

    /// Points.
    [[nodiscard]] double radius() const { return radius_; }
    void setRadius(double radius);
    [[nodiscard]] const QColor& color() const { return color_; }
    void setColor(const QColor& color);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    double radius_ = 0;
    QColor color_;
};

} // namespace velmora
