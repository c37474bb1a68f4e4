// embedding_panel: a panel of X11 desktops without D-Bus: embeds tray windows into its own, at the
// screen's upper left, until it is ended. Writes "docked" for each.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <memory>
#include <xcb/xcb.h>

namespace {

constexpr std::uint16_t side = 24; // pixels

template <typename Reply>
using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

xcb_atom_t atom(xcb_connection_t* display, const char* name) {
    const auto length = static_cast<std::uint16_t>(std::strlen(name));
    const Owned<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(display, xcb_intern_atom(display, 0, length, name), nullptr),
        &std::free);
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

xcb_window_t makePanel(xcb_connection_t* display, const xcb_screen_t& screen) {
    const xcb_window_t panel = xcb_generate_id(display);
    const std::uint32_t isUnmanaged = 1;
    xcb_create_window(display,
                      XCB_COPY_FROM_PARENT,
                      panel,
                      screen.root,
                      0,
                      0,
                      side,
                      side,
                      0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      screen.root_visual,
                      XCB_CW_OVERRIDE_REDIRECT,
                      &isUnmanaged);
    xcb_map_window(display, panel);
    return panel;
}

void dock(xcb_connection_t* display, xcb_window_t panel, xcb_window_t icon) {
    xcb_reparent_window(display, icon, panel, 0, 0);
    const std::uint32_t size[] = {side, side};
    xcb_configure_window(display, icon, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
    xcb_map_window(display, icon);
    xcb_flush(display);
    std::cout << "docked" << std::endl;
}

} // namespace

int main() {
    // Source: System Tray Protocol 0.3.
    constexpr std::uint32_t requestDock = 0;
    xcb_connection_t* const display = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(display) != 0) {
        std::cerr << "embedding_panel: no display\n";
        return 1;
    }
    const xcb_screen_t& screen = *xcb_setup_roots_iterator(xcb_get_setup(display)).data;
    const xcb_window_t panel = makePanel(display, screen);
    const xcb_atom_t opcode = atom(display, "_NET_SYSTEM_TRAY_OPCODE");
    xcb_set_selection_owner(display, panel, atom(display, "_NET_SYSTEM_TRAY_S0"), XCB_CURRENT_TIME);
    xcb_flush(display);
    while (const Owned<xcb_generic_event_t> event{xcb_wait_for_event(display), &std::free}) {
        if ((event->response_type & 0x7FU) == XCB_CLIENT_MESSAGE) {
            const auto& message = *reinterpret_cast<const xcb_client_message_event_t*>(event.get());
            if (message.type == opcode && message.data.data32[1] == requestDock) {
                dock(display, panel, message.data.data32[2]);
            }
        }
    }
    xcb_disconnect(display);
    return 0;
}
