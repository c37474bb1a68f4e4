// GlyphProvider.h: the program's own symbols in any colour and size.
#pragma once

#include <QColor>
#include <QImage>
#include <QQuickImageProvider>
#include <QString>

namespace velmora {

/// The file inside the program that draws `name`; it need not exist.
[[nodiscard]] QString glyphFile(const QString& name);

/// Draws the symbol `name` filled with `color`; null when there is no such drawing.
///
/// Units: `pixels` is the edge of the square picture in device pixels.
/// Threads: any.
[[nodiscard]] QImage drawGlyph(const QString& name, const QColor& color, int pixels);

/// Serves "image://glyph/<name>?<rrggbb or aarrggbb>" to QML.
///
/// Threads: any. Qt asks with the size multiplied by the screen's scale factor, so the drawing is
/// made at device pixels and stays crisp.
class GlyphProvider : public QQuickImageProvider {
public:
    GlyphProvider();
    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace velmora
