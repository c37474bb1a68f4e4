// WindowPicture.h: keeps on disk what a window looks like.
#pragma once

#include <QString>
#include <string>

class QQuickWindow;

namespace velmora {

class AppSettings;

/// The two settings that change how everything looks, with the values that `AppSettings` takes.
struct WindowLook {
    std::string appearance{"light"};
    std::string language{"fr"};
};

/// Shows the window in this look, writes what is drawn then, with a menu that is open over it, to a
/// PNG file, and puts the user's settings back. The window has been shown; it may be on a virtual
/// display or without any.
///
/// Units: one pixel of the file is one device pixel.
/// Threads: main. Events run for 400 ms meanwhile.
/// Errors: false when the file could not be written.
[[nodiscard]] bool saveWindowPicture(QQuickWindow& window,
                                     AppSettings& settings,
                                     const WindowLook& look,
                                     const QString& file);

} // namespace velmora
