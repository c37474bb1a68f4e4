#include "ui/kit/menu/PopupPlace.h"

#include <algorithm>
#include <cmath>

namespace velmora {

QRectF PopupPlace::beside(const QRectF& anchor,
                          const QSizeF& wanted,
                          const QRectF& room,
                          const QRectF& window) {
    const double width =
        std::min(std::max(wanted.width(), anchor.width()), room.width() - 2 * margin);
    const double leftmost = room.left() + margin;
    const double rightmost = std::max(leftmost, room.right() - margin - width);
    const bool endsWithAnchor =
        anchor.left() + width > window.right() && anchor.right() - width >= window.left();
    const double begin = endsWithAnchor ? anchor.right() - width : anchor.left();
    const double left = std::clamp(begin, leftmost, rightmost);

    const double below = room.bottom() - margin - anchor.bottom() - gap;
    const double above = anchor.top() - gap - margin - room.top();
    const bool goesBelow = below >= wanted.height() || below >= above;
    const double height = std::max(0.0, std::min(wanted.height(), goesBelow ? below : above));
    const double top = goesBelow ? anchor.bottom() + gap : anchor.top() - gap - height;

    return {std::round(left), std::round(top), std::floor(width), std::floor(height)};
}

} // namespace velmora
