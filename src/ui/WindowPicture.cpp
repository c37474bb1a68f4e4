#include "ui/WindowPicture.h"

#include "settings/AppSettings.h"

#include <QEventLoop>
#include <QImage>
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

} // namespace

bool saveWindowPicture(QQuickWindow& window,
                       AppSettings& settings,
                       const WindowLook& look,
                       const QString& file) {
    const WindowLook before{settings.appearance(), settings.language()};
    apply(settings, look);
    const QImage picture = window.grabWindow();
    settings.setAppearance(before.appearance);
    settings.setLanguage(before.language);
    return picture.save(file, "PNG");
}

} // namespace velmora
