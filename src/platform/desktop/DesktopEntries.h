// DesktopEntries.h: every installed application.
#pragma once

#include "platform/desktop/DesktopEntry.h"
#include "platform/desktop/FileState.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmora {

/// The entries of all data folders. Of two with one id, the one in the earlier folder counts, even
/// if all it does is to hide the other.
///
/// Threads: one owner.
class DesktopEntries {
public:
    using ById = std::map<std::string, DesktopEntry, std::less<>>;

    /// @param dataFolders  each may hold a folder "applications"
    explicit DesktopEntries(const std::vector<std::filesystem::path>& dataFolders);
    // Its indices point into itself.
    DesktopEntries(const DesktopEntries&) = delete;
    DesktopEntries& operator=(const DesktopEntries&) = delete;

    /// Looks whether a folder has changed since, and reads what is new in it. Cheap when nothing
    /// has: one question to the file system for each folder. A file changed in place is noticed
    /// with its folder's next change.
    void refresh();
    /// Grows when `refresh` changed an entry.
    [[nodiscard]] std::uint64_t generation() const { return generation_; }

    [[nodiscard]] const ById& all() const { return entries_; }
    [[nodiscard]] const DesktopEntry* find(std::string_view id) const;
    /// The entry that a file describes; a file outside the folders counts by its name.
    [[nodiscard]] const DesktopEntry* findFile(const std::filesystem::path& file) const;
    /// The entry that starts a program of this file name. Of several, a visible one counts more,
    /// then one without further arguments.
    [[nodiscard]] const DesktopEntry* findProgram(const std::string& program) const;
    /// The entry that announces windows of this class, upper and lower case alike.
    [[nodiscard]] const DesktopEntry* findWindowClass(std::string_view windowClass) const;

private:
    using Folders = std::vector<std::pair<std::filesystem::path, FileState>>;
    using Index = std::map<std::string, const DesktopEntry*, std::less<>>;

    [[nodiscard]] bool hasChanged() const;
    void scan();
    [[nodiscard]] std::map<std::string, std::filesystem::path> listFiles();
    void index();

    std::vector<std::filesystem::path> roots_;
    Folders folders_;                                      // as they were when they were listed
    std::map<std::string, FileState, std::less<>> states_; // of each entry's file, by id
    ById entries_;
    Index programs_;
    Index windowClasses_;
    std::uint64_t generation_ = 0;
};

} // namespace velmora
