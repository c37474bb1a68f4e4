// IncludeRules.h: finds the lines of a source tree that include what they must not.
#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace velmora {

/// How the headers of a library begin: {"gio/", "glib"}.
using Library = std::vector<std::string>;

/// A folder with everything in it, or the files of one name ("engine/AudioSource"). A file belongs
/// to the most particular part that names it.
struct Part {
    std::string path;                 ///< from the tree's root
    std::vector<std::string> below{}; ///< parts that it may include, with all that they may
    std::vector<Library> libraries{}; ///< for itself alone, besides the standard library
};

/// Every forbidden include of the C++ files under `root`, as "file:line: part may not include
/// what", sorted. Also told: files of no part, and quoted includes that name no file from the root.
///
/// @param parts  from the lowest to the highest: each names only parts that stand before it
/// Errors: throws std::invalid_argument when a part names one that does not.
[[nodiscard]] std::vector<std::string> forbiddenIncludes(const std::filesystem::path& root,
                                                         std::span<const Part> parts);

} // namespace velmora
