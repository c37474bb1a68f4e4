#include "ui/kit/controls/DashedBorder.h"

#include <QPainter>
#include <QPen>

namespace velmora {

namespace {

constexpr double thickness = 1.5; // points
constexpr double dash = 3.2;      // in units of the thickness, like the gap
constexpr double gap = 2.6;

} // namespace

DashedBorder::DashedBorder(QQuickItem* parent) : DrawnItem(parent) {
    connect(this, &DashedBorder::changed, this, &QQuickItem::update);
}

void DashedBorder::setRadius(double radius) {
    if (radius != radius_) {
        radius_ = radius;
        Q_EMIT changed();
    }
}

void DashedBorder::setColor(const QColor& color) {
    if (color != color_) {
        color_ = color;
        Q_EMIT changed();
    }
}

void DashedBorder::draw(QPainter& painter, const QRectF& place, double scale) {
    const double line = thickness * scale;
    const double inset = line / 2; // the pen straddles the path
    QPen pen(color_, line);
    pen.setDashPattern({dash, gap});
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(place.adjusted(inset, inset, -inset, -inset),
                            radius_ * scale - inset,
                            radius_ * scale - inset);
}

} // namespace velmora
