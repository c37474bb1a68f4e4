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

/// The window, and what stands over it where it stands.
QImage grab(QQuickWindow& window) {
    QImage whole = window.grabWindow();
    const double scale = window.effectiveDevicePixelRatio();
    for (QWindow* const other : QGuiApplication::topLevelWindows()) {
        auto* const popup = qobject_cast<QQuickWindow*>(other);
        if (popup == nullptr || !popup->isVisible() || popup->transientParent() != &window) {
            continue;
        }
        // Its rim is transparent on a screen only.
        const auto rim = static_cast<int>(popup->property("rim").toDouble() * scale);
        const QImage all = popup->grabWindow();
        const QImage over = all.copy(all.rect().adjusted(rim, rim, -rim, -rim));
        const QPointF beside = popup->position() - window.position();
        const QPoint place = (beside * scale).toPoint() + QPoint(rim, rim);
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
