// Gio.h: GLib's objects, released by themselves. Only included by .cpp files: GIO's and Qt's
// headers do not share a file.
#pragma once

#include <gio/gdesktopappinfo.h>
#include <memory>

namespace velmora {

struct Unreference {
    void operator()(gpointer object) const noexcept { g_object_unref(object); }
};
using AppInfo = std::unique_ptr<GDesktopAppInfo, Unreference>;

struct Free {
    void operator()(gpointer memory) const noexcept { g_free(memory); }
};
using OwnedText = std::unique_ptr<char, Free>;

} // namespace velmora
