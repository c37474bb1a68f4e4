// Completions.h: what shells offer while a command is written.
#pragma once

#include <string>

namespace velmora {

// Made of the table of commands. Descriptions are in English.

[[nodiscard]] std::string bashCompletion();
[[nodiscard]] std::string zshCompletion();
[[nodiscard]] std::string fishCompletion();

} // namespace velmora
