// DesktopEntry.h: one installed application, as its ".desktop" file describes it.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

struct DesktopEntry {
    std::string id;   ///< file name below "applications", "/" written as "-", without its suffix
    std::string path; ///< of the file
    std::string name; ///< in the desktop's language
    std::string icon; ///< name in the icon theme, or absolute path; empty when there is none
    std::vector<std::string> programs; ///< file names that Exec and TryExec start
    bool plainExec{};                  ///< Exec holds the program alone, or with files to open
    std::string windowClass;
    bool isVisible{};  ///< NoDisplay is not set
    bool isOffered{};  ///< visible, and made for this desktop
    bool isTerminal{}; ///< runs other programs inside
};

/// Reads one file. None when it is no application, is hidden, or its program is not installed.
[[nodiscard]] std::optional<DesktopEntry> readDesktopEntry(const std::filesystem::path& path,
                                                           std::string id);

} // namespace velmora
