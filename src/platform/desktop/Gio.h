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
using LaunchContext = std::unique_ptr<GAppLaunchContext, Unreference>;

struct Free {
    void operator()(gpointer memory) const noexcept { g_free(memory); }
};
using OwnedText = std::unique_ptr<char, Free>;

struct FreeKeyFile {
    void operator()(GKeyFile* file) const noexcept { g_key_file_unref(file); }
};
using KeyFile = std::unique_ptr<GKeyFile, FreeKeyFile>;

} // namespace velmora
