// ExecLine.h: writes the command line of a desktop entry.
#pragma once

#include <string>
#include <string_view>

namespace velmora {

/// The value of `Exec` that runs exactly this program, without arguments. A shell's quoting would
/// not do: only double quotes count there, and a percent sign begins a field code.
/// Source: freedesktop.org, Desktop Entry 1.5, "The Exec key".
[[nodiscard]] std::string execLine(std::string_view program);

} // namespace velmora
