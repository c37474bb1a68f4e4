#include "ui/kit/theme/GlyphProvider.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>

namespace velmora {

namespace {

constexpr int gridSize = 24; // points; the square that every symbol is drawn on

} // namespace

QString glyphFile(const QString& name) {
    return QStringLiteral(":/qt/qml/Velmora/Kit/symbols/%1.svg").arg(name);
}

QImage drawGlyph(const QString& name, const QColor& color, int pixels) {
    const QString file = glyphFile(name);
    if (!QFile::exists(file)) {
        return {};
    }
    QImage picture(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    QSvgRenderer(file).render(&painter);
    // The drawing serves as the shape only: each covered pixel takes the colour.
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(picture.rect(), color);
    return picture;
}

GlyphProvider::GlyphProvider() : QQuickImageProvider(QQuickImageProvider::Image) {
}

QImage GlyphProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const QString name = id.section(u'?', 0, 0);
    const QColor color(u'#' + id.section(u'?', 1));
    const int pixels = std::max(requestedSize.width(), requestedSize.height());
    QImage picture = drawGlyph(name, color, pixels > 0 ? pixels : gridSize);
    *size = picture.size();
    return picture;
}

} // namespace velmora
