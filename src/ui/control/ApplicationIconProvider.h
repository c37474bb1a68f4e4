// ApplicationIconProvider.h: the desktop's application icons for QML.
#pragma once

#include <QQuickImageProvider>

namespace velmora {

/// Draws "image://application/<name in the icon theme, or path; percent-encoded>". An icon that the
/// theme does not have becomes a plain tile, so that a row never has a hole.
///
/// Threads: main; an image that uses it must not load asynchronously.
class ApplicationIconProvider : public QQuickImageProvider {
public:
    ApplicationIconProvider() : QQuickImageProvider(QQuickImageProvider::Pixmap) {}

    QPixmap requestPixmap(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace velmora
