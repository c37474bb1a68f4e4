#include "app/EmbeddingTray.h"

#include <QGuiApplication>
#include <cstdlib>
#include <memory>
#include <string>
#include <xcb/xcb.h>

namespace velmora {
namespace {

struct Free {
    void operator()(void* reply) const noexcept {
        std::free(reply); // NOLINT(cppcoreguidelines-no-malloc): made by libxcb
    }
};
template <typename Reply>
using Owned = std::unique_ptr<Reply, Free>;

} // namespace

bool isEmbeddingTrayThere() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    // A platform plugin may know X11 and yet have no display: Qt's "offscreen" does.
    xcb_connection_t* const connection = x11 == nullptr ? nullptr : x11->connection();
    if (connection == nullptr) {
        return false;
    }
    // Source: System Tray Protocol 0.3: the tray of screen n owns this selection.
    const std::string name = "_NET_SYSTEM_TRAY_S0";
    const Owned<xcb_intern_atom_reply_t> selection(xcb_intern_atom_reply(
        connection,
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.c_str()),
        nullptr));
    if (!selection) {
        return false;
    }
    const Owned<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, selection->atom), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

} // namespace velmora
