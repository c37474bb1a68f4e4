// EmbeddingTray.h: the tray of X11 desktops without D-Bus.
#pragma once

namespace velmora {

/// Whether a panel embeds tray windows on the default screen now; false where there is no X11.
/// Threads: main, after the application object was made.
[[nodiscard]] bool isEmbeddingTrayThere();

} // namespace velmora
