#include "ui/kit/controls/FadingEdge.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

namespace velmora {

FadingEdge::FadingEdge(QQuickItem* parent) : DrawnItem(parent) {
    connect(this, &FadingEdge::changed, this, [this] {
        corners_ = {};
        update();
    });
}

/// The four corners, as if nothing lay between them but the row and the column in the middle.
QImage FadingEdge::corners(double scale) const {
    const double reach = std::max(reach_ * scale, 1.0);
    const double radius = radius_ * scale;
    const int middle = int(std::ceil(reach + radius));
    QImage picture(2 * middle + 1, 2 * middle + 1, QImage::Format_ARGB32_Premultiplied);
    // From a pixel's middle to the middle of the nearest corner's arc.
    const auto way = [&](int pixel) {
        return std::max(0.0, reach + radius - (std::min(pixel, 2 * middle - pixel) + 0.5));
    };
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const double beyond = std::hypot(way(x), way(y)) - radius;
            const double strength = std::clamp(1 - beyond / reach, 0.0, 1.0);
            QColor faded = color_;
            faded.setAlphaF(float(color_.alphaF() * strength * strength));
            picture.setPixel(x, y, qPremultiply(faded.rgba()));
        }
    }
    return picture;
}

void FadingEdge::draw(QPainter& painter, const QRectF& place, double scale) {
    if (corners_.isNull() || cornersFor_ != scale) {
        corners_ = corners(scale);
        cornersFor_ = scale;
    }
    const int side = corners_.width() / 2;
    const double width = place.width() - 2 * side;
    const double height = place.height() - 2 * side;
    if (width < 1 || height < 1) {
        return; // nothing that casts a shadow is that small
    }
    // Edges: what lies in the middle of the corners' picture, drawn out.
    const double right = place.right() - side;
    const double bottom = place.bottom() - side;
    const auto put = [&](const QRectF& where, int x, int y) {
        const QRectF what(x, y, x == side ? 1 : side, y == side ? 1 : side);
        painter.drawImage(where, corners_, what);
    };
    const QPointF inner = place.topLeft() + QPointF(side, side);
    put({place.left(), place.top(), double(side), double(side)}, 0, 0);
    put({inner.x(), place.top(), width, double(side)}, side, 0);
    put({right, place.top(), double(side), double(side)}, side + 1, 0);
    put({place.left(), inner.y(), double(side), height}, 0, side);
    put({right, inner.y(), double(side), height}, side + 1, side);
    put({place.left(), bottom, double(side), double(side)}, 0, side + 1);
    put({inner.x(), bottom, width, double(side)}, side, side + 1);
    put({right, bottom, double(side), double(side)}, side + 1, side + 1);
}

} // namespace velmora
