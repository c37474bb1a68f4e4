#include "ui/kit/controls/Disc.h"

#include <QPainter>
#include <QPen>

namespace velmora {

Disc::Disc(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    connect(this, &Disc::changed, this, [this] { update(); });
}

void Disc::paint(QPainter* painter) {
    const double inset = outlineWidth_ / 2;
    painter->setPen(QPen(outlineColor_, outlineWidth_));
    painter->setBrush(color_);
    painter->drawEllipse(boundingRect().adjusted(inset, inset, -inset, -inset));
}

} // namespace velmora
