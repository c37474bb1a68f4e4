#include "platform/desktop/AutostartEntry.h"

#include "platform/InstalledFile.h"
#include "platform/desktop/ExecLine.h"
#include "platform/desktop/Gio.h"

#include <cerrno>
#include <glib/gstdio.h>
#include <system_error>
#include <utility>

namespace velmora {

namespace fs = std::filesystem;

namespace {

constexpr const char* entryName = "app.velmora.Velmora.desktop";
constexpr const char* enabledKey = "X-GNOME-Autostart-enabled";

std::string contentFor(const std::string& program) {
    const KeyFile file(g_key_file_new());
    const auto set = [&file](const char* key, const std::string& value) {
        g_key_file_set_string(file.get(), G_KEY_FILE_DESKTOP_GROUP, key, value.c_str());
    };
    set(G_KEY_FILE_DESKTOP_KEY_TYPE, G_KEY_FILE_DESKTOP_TYPE_APPLICATION);
    set(G_KEY_FILE_DESKTOP_KEY_VERSION, "1.4");
    set(G_KEY_FILE_DESKTOP_KEY_NAME, "Velmora");
    set(G_KEY_FILE_DESKTOP_KEY_EXEC, execLine(program) + " --hidden");
    // Keeps an entry that outlives its program from being run, or complained about.
    set(G_KEY_FILE_DESKTOP_KEY_TRY_EXEC, program);
    set(G_KEY_FILE_DESKTOP_KEY_ICON, "app.velmora.Velmora");
    set(G_KEY_FILE_DESKTOP_KEY_TERMINAL, "false");
    set(enabledKey, "true");
    return OwnedText(g_key_file_to_data(file.get(), nullptr, nullptr)).get();
}

/// The system's words for `error`, about `path`.
LoginItem::Outcome failure(const fs::path& path, int error) {
    const OwnedText name(g_filename_display_name(path.c_str()));
    return std::unexpected(std::string(name.get()) + ": " + g_strerror(error));
}

} // namespace

fs::path AutostartEntry::userFolder() {
    return fs::path(g_get_user_config_dir()) / "autostart";
}

fs::path AutostartEntry::ownProgram() {
    if (auto started = installedFile("bin/velmora"); !started.empty()) {
        return started; // it becomes the running program
    }
    std::error_code unknown; // without /proc: found by name at the next login
    auto program = fs::read_symlink("/proc/self/exe", unknown);
    return unknown ? fs::path("velmora") : program;
}

AutostartEntry::AutostartEntry(fs::path folder, fs::path program)
    : file_(std::move(folder) / entryName), program_(std::move(program)) {
}

bool AutostartEntry::isEnabled() const {
    // None unless it is a whole entry of an application whose program is there.
    const AppInfo info(g_desktop_app_info_new_from_filename(file_.c_str()));
    if (!info || g_desktop_app_info_get_is_hidden(info.get()) != FALSE) {
        return false;
    }
    return g_desktop_app_info_has_key(info.get(), enabledKey) == FALSE ||
           g_desktop_app_info_get_boolean(info.get(), enabledKey) != FALSE;
}

LoginItem::Outcome AutostartEntry::registerItem() {
    constexpr int ownFolder = 0700;
    constexpr int readableFile = 0644;
    if (g_mkdir_with_parents(file_.parent_path().c_str(), ownFolder) != 0) {
        return failure(file_.parent_path(), errno);
    }
    const std::string content = contentFor(program_.native());
    GError* error = nullptr;
    const auto whole = static_cast<GFileSetContentsFlags>(G_FILE_SET_CONTENTS_CONSISTENT |
                                                          G_FILE_SET_CONTENTS_DURABLE);
    if (g_file_set_contents_full(file_.c_str(),
                                 content.data(),
                                 static_cast<gssize>(content.size()),
                                 whole,
                                 readableFile,
                                 &error) == FALSE) {
        const std::string message = error->message;
        g_error_free(error);
        return std::unexpected(message);
    }
    return {};
}

LoginItem::Outcome AutostartEntry::unregisterItem() {
    if (g_unlink(file_.c_str()) != 0 && errno != ENOENT) {
        return failure(file_, errno);
    }
    return {};
}

} // namespace velmora
