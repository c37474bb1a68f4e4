// Kit.h: gives a QML engine what the controls need.
#pragma once

#include <QQmlEngine>
#include <QVariant>

namespace velmora {

class AppSettings;

/// Makes the module `Velmora.Kit` usable: its import path, fonts and symbols, and the objects
/// behind its singletons, which the engine owns. Call it before any QML is loaded.
///
/// Threads: main. `settings` outlives the engine.
void installKit(QQmlEngine& engine, AppSettings& settings);

/// The singleton that `installKit` made for this engine. An engine keeps its own, so that several
/// engines (as in tests) never share one.
template <typename T>
[[nodiscard]] T* kitOf(QQmlEngine* engine) {
    auto* object = engine->property(T::staticMetaObject.className()).template value<T*>();
    QQmlEngine::setObjectOwnership(object, QQmlEngine::CppOwnership);
    return object;
}

} // namespace velmora
