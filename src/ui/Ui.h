// Ui.h: gives a QML engine what the windows need.
#pragma once

#include <expected>
#include <memory>
#include <string>

class QObject;
class QQmlEngine;
class QQuickWindow;
class QUrl;

namespace velmora {

/// Makes the module `Velmora` and its image provider usable. Call it after `installKit` and before
/// any QML is loaded.
///
/// Threads: main.
void installUi(QQmlEngine& engine);

/// Makes the window of a QML file, such as "qrc:/qt/qml/Velmora/ControlWindow.qml", over its
/// `model`, without showing it. `engine` and `model` outlive the window.
///
/// Threads: main. Errors: what QML has to say about the file.
[[nodiscard]] std::expected<std::unique_ptr<QQuickWindow>, std::string>
makeWindow(QQmlEngine& engine, const QUrl& file, QObject& model);

} // namespace velmora
