#include "ui/WindowPicture.h"

#include "settings/AppSettings.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QQuickWindow>
#include <QTimer>
#include <chrono>

namespace velmora {

namespace {

// Texts lay out anew, the window may take another size, and switches glide to their place.
constexpr std::chrono::milliseconds settlingTime{400};

void apply(AppSettings& settings, const WindowLook& look) {
    settings.setAppearance(look.appearance);
    settings.setLanguage(look.language);
    QEventLoop events;
    QTimer::singleShot(settlingTime, &events, &QEventLoop::quit);
    events.exec();
}

/// A window with what shines through it, which a grabbed picture does not tell: by how much
/// brighter it is before white than before black.
QImage translucent(QQuickWindow& window) {
    const QColor own = window.color();
    const auto before = [&](const QColor& ground) {
        window.setColor(ground);
        return window.grabWindow().convertToFormat(QImage::Format_ARGB32);
    };
    const QImage onWhite = before(Qt::white);
    QImage picture = before(Qt::black);
    window.setColor(own);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb dark = picture.pixel(x, y);
            const int through = qGreen(onWhite.pixel(x, y)) - qGreen(dark);
            picture.setPixel(x, y, qRgba(qRed(dark), qGreen(dark), qBlue(dark), 255 - through));
        }
    }
    picture.reinterpretAsFormat(QImage::Format_ARGB32_Premultiplied); // black has added nothing
    return picture;
}

/// The window, and what stands over it where it stands.
QImage grab(QQuickWindow& window) {
    QImage whole = window.grabWindow();
    const double scale = window.effectiveDevicePixelRatio();
    for (QWindow* const other : QGuiApplication::topLevelWindows()) {
        auto* const popup = qobject_cast<QQuickWindow*>(other);
        if (popup == nullptr || !popup->isVisible() || popup->transientParent() != &window) {
            continue;
        }
        const QImage over = translucent(*popup);
        const QPoint place = (QPointF(popup->position() - window.position()) * scale).toPoint();
        const QRect room = whole.rect().united(QRect(place, over.size()));
        QImage both(room.size(), QImage::Format_ARGB32_Premultiplied);
        both.fill(Qt::transparent);
        QPainter painter(&both);
        painter.drawImage(-room.topLeft(), whole);
        painter.drawImage(place - room.topLeft(), over);
        painter.end();
        whole = both;
    }
    return whole;
}

} // namespace

bool saveWindowPicture(QQuickWindow& window,
                       AppSettings& settings,
                       const WindowLook& look,
                       const QString& file) {
    const WindowLook before{settings.appearance(), settings.language()};
    apply(settings, look);
    const QImage picture = grab(window);
    settings.setAppearance(before.appearance);
    settings.setLanguage(before.language);
    return picture.save(file, "PNG");
}

} // namespace velmora
