// PopupPlace.h: where a pop-up opens inside its window.
#pragma once

#include <QObject>
#include <QRectF>
#include <QSizeF>
#include <QtQml/qqmlregistration.h>

namespace velmora {

/// Threads: any.
class PopupPlace : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    static constexpr double gap = 4.0;    // points, from the anchor
    static constexpr double margin = 8.0; // points, from the window's edge

    /// Under the anchor and as wide as it at least; above it where there is more room; never beyond
    /// the window, so that a long list becomes lower and scrolls. Whole points.
    Q_INVOKABLE [[nodiscard]] static QRectF
    beside(const QRectF& anchor, const QSizeF& wanted, const QSizeF& window);
};

} // namespace velmora
