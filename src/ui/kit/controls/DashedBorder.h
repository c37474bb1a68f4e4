// DashedBorder.h: the outline of a place that is still empty.
#pragma once

#include "ui/kit/controls/DrawnItem.h"

#include <QColor>
#include <QtQml/qqmlregistration.h>

namespace velmora {

/// A dashed rounded rectangle, one and a half points thick, inside the item's bounds.
///
/// Its base is named in full because Qt's tools take the name as it is written.
///
/// Threads: main.
class DashedBorder : public velmora::DrawnItem {
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

Q_SIGNALS:
    void changed();

protected:
    void draw(QPainter& painter, const QRectF& place, double scale) override;

private:
    double radius_ = 0;
    QColor color_;
};

} // namespace velmora
