// KeptText.h: one text of a settings file that somebody else may be using.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

/// Changes nothing, makes no file and waits for nobody. None when there is no such text, or when it
/// cannot be read now. Threads: any.
[[nodiscard]] std::optional<std::string> keptText(const std::filesystem::path& file,
                                                  std::string_view key);

} // namespace velmora
