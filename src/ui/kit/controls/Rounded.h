// Rounded.h: every shape with round corners.
#pragma once

#include "ui/kit/controls/DrawnItem.h"

#include <QColor>
#include <QtQml/qqmlregistration.h>

namespace velmora {

/// A rectangle with round corners and an outline inside its bounds; nothing of it is seen unless it
/// is given a colour. With a radius of half its size it is a circle or a capsule.
///
/// Without a graphics card, Qt draws the corners of its own Rectangle from a few whole points.
///
/// Its base is named in full because Qt's tools take the name as it is written.
///
/// Units: points.
/// Threads: main.
class Rounded : public velmora::DrawnItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY colorChanged)
    /// The colour at the right edge, where it is not the same; transparent = the same.
    Q_PROPERTY(QColor trailingColor MEMBER trailingColor_ NOTIFY trailingColorChanged)
    Q_PROPERTY(double radius MEMBER radius_ NOTIFY radiusChanged)
    Q_PROPERTY(QColor outlineColor MEMBER outlineColor_ NOTIFY outlineColorChanged)
    Q_PROPERTY(double outlineWidth MEMBER outlineWidth_ NOTIFY outlineWidthChanged)

public:
    explicit Rounded(QQuickItem* parent = nullptr);

Q_SIGNALS:
    void colorChanged();
    void trailingColorChanged();
    void radiusChanged();
    void outlineColorChanged();
    void outlineWidthChanged();

protected:
    void draw(QPainter& painter, const QRectF& place, double scale) override;

private:
    QColor color_{Qt::transparent};
    QColor trailingColor_{Qt::transparent};
    double radius_ = 0.0;
    QColor outlineColor_{Qt::transparent};
    double outlineWidth_ = 0.0;
};

} // namespace velmora
