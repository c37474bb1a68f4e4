// ExecLine.h: writes values of desktop entries.
#pragma once

#include <string>
#include <string_view>

namespace velmora {

/// A string as the value of any key.
/// Source: freedesktop.org, Desktop Entry 1.5, "Possible value types".
[[nodiscard]] std::string entryValue(std::string_view text);

/// The value of `Exec` that runs exactly this program, without arguments.
/// Source: freedesktop.org, Desktop Entry 1.5, "The Exec key".
[[nodiscard]] std::string execValue(std::string_view program);

} // namespace velmora
