#include "app/EmbeddingTray.h"

#include "ui/kit/X11Selection.h"

namespace velmora {

// Source: System Tray Protocol 0.3: the tray of screen n owns this selection.
bool isEmbeddingTrayThere() {
    return isX11SelectionOwned("_NET_SYSTEM_TRAY_S0").value_or(false);
}

} // namespace velmora
