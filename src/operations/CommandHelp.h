// CommandHelp.h: the table of commands as a person, a manual's reader or a shell reads it.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace velmora {

/// Looks up a French text in the reader's language.
using Lookup = std::function<std::string(std::string_view french)>;

[[nodiscard]] std::string helpText(const Lookup& lookup);

} // namespace velmora
