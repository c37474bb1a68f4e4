// InstalledFile.h: finds what is installed beside the running program.
#pragma once

#include <filesystem>
#include <string_view>
#include <system_error>

namespace velmora {

/// Looks for `path` ("bin/velmora") in the running program's folder and the three above it, as an
/// installation has it under its prefix and a build under its folder. Empty = it is not there.
/// Threads: any.
[[nodiscard]] inline std::filesystem::path installedFile(std::string_view path) {
    constexpr int levelsAbove = 3;
    std::error_code unreadable;
    auto folder = std::filesystem::read_symlink("/proc/self/exe", unreadable).parent_path();
    for (int level = 0; level <= levelsAbove; ++level, folder = folder.parent_path()) {
        if (std::filesystem::exists(folder / path, unreadable)) {
            return folder / path;
        }
    }
    return {};
}

} // namespace velmora
