#include "ui/kit/controls/DashedBorder.h"

#include <QPainter>
#include <QPen>

namespace velmora {

namespace {

constexpr double thickness = 1.5; // points
constexpr double dash = 3.2;      // in units of the thickness, like the gap
constexpr double gap = 2.6;

} // namespace

DashedBorder::DashedBorder(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    connect(this, &DashedBorder::changed, this, [this] { update(); });
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

void DashedBorder::paint(QPainter* painter) {
    constexpr double inset = thickness / 2; // the pen straddles the path
    QPen pen(color_, thickness);
    pen.setDashPattern({dash, gap});
    painter->setPen(pen);
    painter->setBrush(Qt::NoBrush);
    painter->drawRoundedRect(
        boundingRect().adjusted(inset, inset, -inset, -inset), radius_ - inset, radius_ - inset);
}

} // namespace velmora
