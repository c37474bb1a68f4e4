#include "platform/desktop/DesktopEntry.h"

#include "platform/desktop/Gio.h"
#include "platform/desktop/ProgramName.h"

#include <algorithm>

namespace velmora {

namespace {

std::string textOf(const char* text) {
    return text == nullptr ? std::string{} : std::string(text);
}

std::string value(GDesktopAppInfo* info, const char* key) {
    return textOf(OwnedText(g_desktop_app_info_get_string(info, key)).get());
}

/// A theme's icons are named without a suffix; some entries give one all the same.
std::string iconOf(GDesktopAppInfo* info) {
    std::string icon = value(info, "Icon");
    if (!icon.starts_with('/')) {
        for (const char* suffix : {".png", ".svg", ".xpm"}) {
            if (icon.ends_with(suffix)) {
                icon.resize(icon.size() - 4);
            }
        }
    }
    return icon;
}

std::vector<std::string> programsOf(const std::string& exec, const std::string& tryExec) {
    std::vector<std::string> programs;
    for (const std::string& line : {exec, tryExec}) {
        std::string program = programOfExec(line);
        // A TryExec that only asks for a language is no name of this application.
        if (!program.empty() && std::ranges::find(programs, program) == programs.end()) {
            programs.push_back(std::move(program));
        }
    }
    return programs;
}

bool isPlain(const std::string& exec) {
    const auto words = splitExec(exec);
    return std::ranges::all_of(words.begin() + (words.empty() ? 0 : 1),
                               words.end(),
                               [](const auto& word) { return word.starts_with('%'); });
}

} // namespace

std::optional<DesktopEntry> readDesktopEntry(const std::filesystem::path& path, std::string id) {
    const AppInfo info(g_desktop_app_info_new_from_filename(path.c_str()));
    if (!info || g_desktop_app_info_get_is_hidden(info.get())) {
        return std::nullopt;
    }
    GAppInfo* application = G_APP_INFO(info.get());
    const std::string exec = textOf(g_app_info_get_commandline(application));
    const std::string categories = textOf(g_desktop_app_info_get_categories(info.get()));
    return DesktopEntry{
        .id = std::move(id),
        .path = path,
        .name = textOf(g_app_info_get_name(application)),
        .icon = iconOf(info.get()),
        .programs = programsOf(exec, value(info.get(), "TryExec")),
        .plainExec = isPlain(exec),
        .windowClass = textOf(g_desktop_app_info_get_startup_wm_class(info.get())),
        .isVisible = !g_desktop_app_info_get_nodisplay(info.get()),
        .isOffered = g_app_info_should_show(application) != FALSE,
        .isTerminal = (";" + categories).find(";TerminalEmulator;") != std::string::npos,
    };
}

} // namespace velmora
