// PopupPlace.h: where a pop-up opens.
#pragma once

#include <QRectF>
#include <QSizeF>

namespace velmora {

namespace PopupPlace {

constexpr double gap = 4.0;    // points, from the anchor
constexpr double margin = 8.0; // points, from the room's edge

/// Under the anchor and as wide as it at least; above it where there is more room; never beyond
/// the room, so that a long list becomes lower and scrolls. What would leave the window to the
/// right ends where the anchor ends, if that keeps it inside. Whole points. Threads: any.
[[nodiscard]] QRectF
beside(const QRectF& anchor, const QSizeF& wanted, const QRectF& room, const QRectF& window);

} // namespace PopupPlace

} // namespace velmora
