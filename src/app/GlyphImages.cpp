#include "app/GlyphImages.h"

#include "app/MeterGlyph.h"
#include "ui/kit/theme/GlyphProvider.h"

#include <QByteArray>
#include <QPainter>
#include <QPixmap>
#include <QSizeF>
#include <algorithm>

namespace velmora {
namespace {

constexpr QSizeF meterSize{meterGlyphWidth, meterGlyphHeight};
constexpr QSizeF idleSize{28.0, 15.0}; // points

QImage emptyImage(const QSizeF& points, double pixelsPerPoint) {
    QImage image((points * pixelsPerPoint).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

QImage decoded(std::string_view base64) {
    const auto bytes = QByteArray::fromBase64Encoding(
        QByteArray(base64.data(), static_cast<qsizetype>(base64.size())),
        QByteArray::AbortOnBase64DecodingErrors);
    return bytes ? QImage::fromData(*bytes, "PNG") : QImage{};
}

/// Where a picture of this shape fits into `area`, centred.
QRectF fitted(const QSizeF& size, const QRectF& area) {
    QRectF place(QPointF{}, size.scaled(area.size(), Qt::KeepAspectRatio));
    place.moveCenter(area.center());
    return place;
}

QImage templateOf(TrayGlyph glyph, int side) {
    const QSizeF size = glyph ? meterSize : idleSize;
    const double pixelsPerPoint = side / size.width();
    return glyph ? meterIcon(levelOfStep(*glyph), pixelsPerPoint) : idleIcon(pixelsPerPoint);
}

} // namespace

QImage meterIcon(float level, double pixelsPerPoint) {
    QImage image = emptyImage(meterSize, pixelsPerPoint);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(pixelsPerPoint, pixelsPerPoint);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    for (const MeterBar& bar : meterBars(level)) {
        painter.drawRoundedRect(
            QRectF(bar.x, bar.y, bar.width, bar.height), meterBarRadius, meterBarRadius);
    }
    return image;
}

QImage idleIcon(double pixelsPerPoint, std::string_view png, const QString& fallback) {
    QImage image = emptyImage(idleSize, pixelsPerPoint);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    if (const QImage picture = decoded(png); !picture.isNull()) {
        painter.drawImage(QRectF(image.rect()), picture);
    } else if (const QImage symbol = drawGlyph(fallback, Qt::black, image.height());
               !symbol.isNull()) {
        painter.drawImage(fitted(symbol.size(), image.rect()), symbol);
    }
    return image;
}

QString glyphName(TrayGlyph glyph) {
    const QString state =
        glyph ? QStringLiteral("level-%1").arg(*glyph, 2, 10, QLatin1Char('0')) : "idle";
    return QStringLiteral("app.velmora.Velmora-%1-symbolic").arg(state);
}

QIcon paintedGlyph(TrayGlyph glyph, const QColor& ink) {
    QIcon icon;
    // Plain sizes: panels are told no scale factor, and choose among them.
    for (const int side : {22, 44}) {
        const QImage shape = templateOf(glyph, side);
        QImage square = emptyImage(QSizeF(side, side), 1.0);
        QPainter painter(&square);
        painter.drawImage(fitted(shape.size(), square.rect()), shape);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(square.rect(), ink);
        painter.end();
        icon.addPixmap(QPixmap::fromImage(square));
    }
    return icon;
}

} // namespace velmora
