// X11Selection.h: who is there on an X11 desktop.
#pragma once

#include <optional>
#include <string_view>

namespace velmora {

/// Whether some program owns this selection, by which trays and compositing managers make
/// themselves known; nothing where there is no X11. Threads: main, after the application object was
/// made.
[[nodiscard]] std::optional<bool> isX11SelectionOwned(std::string_view name);

} // namespace velmora
