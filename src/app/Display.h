// Display.h: whether there is anything to show windows on.
#pragma once

namespace velmora {

/// Whether Qt will find a display: it ends the program where it finds none. What names another
/// kind of display than X11 and Wayland is trusted.
/// Threads: any, before a QGuiApplication is made.
[[nodiscard]] bool hasDisplay();

} // namespace velmora
