#include "platform/desktop/DesktopEntries.h"

#include <algorithm>
#include <system_error>
#include <tuple>

namespace velmora {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view entrySuffix = ".desktop";
constexpr int deepest = 8; // a folder linked into itself must end somewhere

using Files = std::map<std::string, fs::path>;

std::string lowered(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return result;
}

/// Adds the files in `folder` that no earlier folder has, and reports every folder on the way.
template <typename OnFolder>
void listFolder(
    const fs::path& folder, const std::string& prefix, int depth, Files& files, OnFolder onFolder) {
    onFolder(folder); // before it is listed: a change meanwhile shows next time
    std::error_code error;
    for (fs::directory_iterator file(folder, error), end; !error && file != end;
         file.increment(error)) {
        const std::string name = file->path().filename();
        std::error_code unreadable;
        if (file->is_directory(unreadable)) {
            if (depth < deepest) {
                listFolder(file->path(), prefix + name + "-", depth + 1, files, onFolder);
            }
        } else if (name.ends_with(entrySuffix)) {
            files.emplace(prefix + name.substr(0, name.size() - entrySuffix.size()), file->path());
        }
    }
}

/// Which of two entries a program's or window's name stands for.
bool isBetter(const DesktopEntry& left, const DesktopEntry& right) {
    return std::tie(left.isVisible, left.plainExec) > std::tie(right.isVisible, right.plainExec);
}

} // namespace

DesktopEntries::DesktopEntries(const std::vector<fs::path>& dataFolders) {
    for (const fs::path& folder : dataFolders) {
        roots_.push_back(folder / "applications");
    }
    scan();
}

void DesktopEntries::refresh() {
    if (hasChanged()) {
        scan();
    }
}

bool DesktopEntries::hasChanged() const {
    return std::ranges::any_of(folders_, [](const auto& folder) {
        return mayChangeUnseen(folder.second) || fileStateOf(folder.first) != folder.second;
    });
}

std::map<std::string, fs::path> DesktopEntries::listFiles() {
    Files files;
    folders_.clear();
    for (const fs::path& root : roots_) {
        listFolder(root, "", 0, files, [this](const fs::path& folder) {
            folders_.emplace_back(folder, fileStateOf(folder));
        });
    }
    return files;
}

void DesktopEntries::scan() {
    ById entries;
    std::map<std::string, FileState, std::less<>> states;
    bool changed = false;
    for (const auto& [id, path] : listFiles()) {
        const FileState state = fileStateOf(path);
        const auto known = entries_.find(id);
        if (known != entries_.end() && known->second.path == path && states_.at(id) == state) {
            entries.insert(entries_.extract(known));
        } else if (auto entry = readDesktopEntry(path, id)) {
            entries.emplace(id, std::move(*entry));
            changed = true;
        } else {
            continue; // asked again at the next change: its program may be there by then
        }
        states.emplace(id, state);
    }
    changed = changed || !entries_.empty(); // those left over are gone
    entries_ = std::move(entries);
    states_ = std::move(states);
    if (changed) {
        ++generation_;
        index();
    }
}

void DesktopEntries::index() {
    programs_.clear();
    windowClasses_.clear();
    const auto add = [](Index& index, std::string name, const DesktopEntry& entry) {
        const auto [place, isNew] = index.emplace(std::move(name), &entry);
        if (!isNew && isBetter(entry, *place->second)) {
            place->second = &entry;
        }
    };
    for (const auto& [id, entry] : entries_) {
        for (const std::string& program : entry.programs) {
            add(programs_, program, entry);
        }
        if (!entry.windowClass.empty()) {
            add(windowClasses_, lowered(entry.windowClass), entry);
        }
    }
}

const DesktopEntry* DesktopEntries::find(std::string_view id) const {
    const auto found = entries_.find(id);
    return found == entries_.end() ? nullptr : &found->second;
}

const DesktopEntry* DesktopEntries::findFile(const fs::path& file) const {
    const auto same = std::ranges::find_if(
        entries_, [&](const auto& entry) { return entry.second.path == file; });
    return same != entries_.end() ? &same->second : find(file.stem().string());
}

const DesktopEntry* DesktopEntries::findProgram(const std::string& program) const {
    const auto found = programs_.find(program);
    return found == programs_.end() ? nullptr : found->second;
}

const DesktopEntry* DesktopEntries::findWindowClass(std::string_view windowClass) const {
    const auto found = windowClasses_.find(lowered(windowClass));
    return found == windowClasses_.end() ? nullptr : found->second;
}

} // namespace velmora
