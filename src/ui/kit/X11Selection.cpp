#include "ui/kit/X11Selection.h"

#include <QGuiApplication>
#include <cstdint>
#include <cstdlib>
#include <memory>
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

std::optional<bool> isX11SelectionOwned(std::string_view name) {
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    // A platform plugin may know X11 and yet have no display: Qt's "offscreen" does.
    xcb_connection_t* const connection = x11 == nullptr ? nullptr : x11->connection();
    if (connection == nullptr) {
        return std::nullopt;
    }
    const Owned<xcb_intern_atom_reply_t> selection(xcb_intern_atom_reply(
        connection,
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr));
    if (!selection) {
        return false;
    }
    const Owned<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, selection->atom), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

} // namespace velmora
