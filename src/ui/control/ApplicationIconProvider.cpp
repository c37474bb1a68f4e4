#include "ui/control/ApplicationIconProvider.h"

#include <QColor>
#include <QIcon>
#include <QPainter>
#include <QUrl>

namespace velmora {

namespace {

constexpr int usualSize = 16; // pixels

QIcon iconNamed(const QString& nameOrPath) {
    return nameOrPath.startsWith('/') ? QIcon(nameOrPath) : QIcon::fromTheme(nameOrPath);
}

/// A window in a grey that is seen on light and dark alike.
QPixmap tile(const QSize& size) {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x7C, 0x8C, 0x92));
    const double side = std::min(size.width(), size.height());
    painter.drawRoundedRect(QRectF(0, 0, side, side), side / 4, side / 4);
    painter.setBrush(QColor(255, 255, 255, 160));
    painter.drawRoundedRect(QRectF(side / 5, side / 4, side * 3 / 5, side / 8), 1, 1);
    return pixmap;
}

} // namespace

QPixmap
ApplicationIconProvider::requestPixmap(const QString& id, QSize* size, const QSize& requestedSize) {
    const QSize wanted = requestedSize.isEmpty() ? QSize(usualSize, usualSize) : requestedSize;
    QPixmap pixmap = iconNamed(QUrl::fromPercentEncoding(id.toUtf8())).pixmap(wanted, 1.0);
    if (pixmap.isNull()) {
        pixmap = tile(wanted);
    }
    if (size != nullptr) {
        *size = pixmap.size();
    }
    return pixmap;
}

} // namespace velmora
