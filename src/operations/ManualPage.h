// ManualPage.h: the program's manual page.
#pragma once

#include "operations/CommandHelp.h"

#include <string>
#include <string_view>

namespace velmora {

/// For man, in UTF-8: what `helpText` says, and the shape of the JSON.
[[nodiscard]] std::string manualPage(const Lookup& lookup, std::string_view version);

} // namespace velmora
