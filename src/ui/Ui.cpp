#include "ui/Ui.h"

#include "ui/control/ApplicationIconProvider.h"

#include <QIcon>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QUrl>
#include <QVariant>
#include <QtPlugin>

Q_IMPORT_PLUGIN(VelmoraPlugin)

namespace velmora {

void installUi(QQmlEngine& engine) {
    engine.addImageProvider(QStringLiteral("application"), new ApplicationIconProvider);
    // Where programs without a theme's icon keep theirs.
    auto folders = QIcon::fallbackSearchPaths();
    const auto pixmaps = QStringLiteral("/usr/share/pixmaps");
    if (!folders.contains(pixmaps)) {
        QIcon::setFallbackSearchPaths(folders << pixmaps);
    }
}

std::expected<std::unique_ptr<QQuickWindow>, std::string>
makeWindow(QQmlEngine& engine, const QUrl& file, QObject& model) {
    QQmlComponent component(&engine, file);
    if (component.isReady()) { // Qt 6.4 crashes when it is not
        std::unique_ptr<QObject> object(
            component.createWithInitialProperties({{"model", QVariant::fromValue(&model)}}));
        if (auto* const window = qobject_cast<QQuickWindow*>(object.get())) {
            static_cast<void>(object.release());
            return std::unique_ptr<QQuickWindow>(window);
        }
    }
    return std::unexpected(component.errorString().toStdString());
}

} // namespace velmora
