// TextFile.h: whole files that a user names.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

/// None for what is no ordinary file, cannot be read, or is larger than `most` bytes.
[[nodiscard]] std::optional<std::string> readTextFile(const std::filesystem::path& file,
                                                      std::size_t most);

/// The file has the whole text afterwards, or is as it was.
[[nodiscard]] bool writeTextFile(const std::filesystem::path& file, std::string_view text);

} // namespace velmora
