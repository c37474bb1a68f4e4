// WindowSystem.h: what shows the windows.
#pragma once

#include <QGuiApplication>

namespace velmora {

/// Threads: main; they need a QGuiApplication.
[[nodiscard]] inline bool isOnWayland() {
    return QGuiApplication::platformName().startsWith("wayland"); // also wayland-egl
}
[[nodiscard]] inline bool isOnX11() {
    return QGuiApplication::platformName() == "xcb";
}

} // namespace velmora
