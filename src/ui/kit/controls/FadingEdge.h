// FadingEdge.h: what a shadow is drawn with.
#pragma once

#include "ui/kit/controls/DrawnItem.h"

#include <QColor>
#include <QImage>
#include <QtQml/qqmlregistration.h>

namespace velmora {

/// The ring around a rectangle with round corners, within the item's bounds: it begins at the
/// rectangle with its colour and fades out from pixel to pixel. The rectangle's middle is left out:
/// something lies there.
///
/// Qt's own blur draws nothing without a graphics card.
///
/// Its base is named in full because Qt's tools take the name as it is written.
///
/// Units: points.
/// Threads: main.
class FadingEdge : public velmora::DrawnItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY changed)
    /// How far it reaches from the rectangle to the item's bounds.
    Q_PROPERTY(double reach MEMBER reach_ NOTIFY changed)
    /// Of the rectangle's corners.
    Q_PROPERTY(double radius MEMBER radius_ NOTIFY changed)

public:
    explicit FadingEdge(QQuickItem* parent = nullptr);

Q_SIGNALS:
    void changed();

protected:
    void draw(QPainter& painter, const QRectF& place, double scale) override;

private:
    [[nodiscard]] QImage corners(double scale) const;

    QColor color_{Qt::transparent};
    double reach_ = 0.0;
    double radius_ = 0.0;
    QImage corners_;        // kept from picture to picture
    double cornersFor_ = 0; // that many pixels a point
};

} // namespace velmora
