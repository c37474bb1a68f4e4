#include "ui/kit/controls/Rounded.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>
#include <algorithm>
#include <cmath>
#include <numbers>

namespace velmora {

namespace {

using std::numbers::pi;

/// Adds a closed outline. Qt's own curves are up to a third of a pixel off, and look like polygons.
void add(QPainterPath& path, const QRectF& shape, double radius) {
    constexpr double exactness = 0.02; // pixels between an arc and its chord
    const double part = 2 * std::acos(1 - exactness / std::max(radius, exactness));
    const int parts = int(std::ceil(pi / 2 / part));
    QPolygonF outline;
    const auto corner = [&](double x, double y, int quarter) {
        for (int i = 0; i <= parts; ++i) {
            const double angle = pi / 2 * (quarter + double(i) / parts);
            outline << QPointF(x + radius * std::cos(angle), y + radius * std::sin(angle));
        }
    };
    const QRectF middles = shape.adjusted(radius, radius, -radius, -radius);
    corner(middles.right(), middles.bottom(), 0);
    corner(middles.left(), middles.bottom(), 1);
    corner(middles.left(), middles.top(), 2);
    corner(middles.right(), middles.top(), 3);
    path.addPolygon(outline);
    path.closeSubpath();
}

} // namespace

Rounded::Rounded(QQuickItem* parent) : DrawnItem(parent) {
    for (const auto change : {&Rounded::colorChanged,
                              &Rounded::trailingColorChanged,
                              &Rounded::radiusChanged,
                              &Rounded::outlineColorChanged,
                              &Rounded::outlineWidthChanged}) {
        connect(this, change, this, &QQuickItem::update);
    }
}

void Rounded::draw(QPainter& painter, const QRectF& place, double scale) {
    const bool isOutlined = outlineWidth_ > 0 && outlineColor_.alpha() > 0;
    const double line = isOutlined ? std::max(1.0, std::round(outlineWidth_ * scale)) : 0.0;
    const double radius = std::min(radius_ * scale, std::min(place.width(), place.height()) / 2);
    const auto inset = [&](QPainterPath& path, double by) {
        add(path, place.adjusted(by, by, -by, -by), std::max(0.0, radius - by));
    };
    QLinearGradient colors(place.topLeft(), place.topRight());
    colors.setColorAt(0, color_);
    colors.setColorAt(1, trailingColor_);
    const QBrush brush = trailingColor_.alpha() > 0 ? QBrush(colors) : QBrush(color_);
    if (radius <= 0) {
        painter.fillRect(place.adjusted(line, line, -line, -line), brush);
    } else if (color_.alpha() > 0) {
        QPainterPath area;
        inset(area, line / 2); // no gap shows between it and the outline
        painter.fillPath(area, brush);
    }
    if (isOutlined) {
        QPainterPath ring;
        inset(ring, 0);
        inset(ring, line);
        painter.fillPath(ring, outlineColor_);
    }
}

} // namespace velmora
