// Lookups.h: a user's two languages, as what writes help and manuals takes them.
#pragma once

#include "settings/Texts.h"

#include <string>
#include <string_view>

namespace velmora {

inline std::string english(std::string_view text) {
    return std::string(inEnglish(text));
}

inline std::string french(std::string_view text) {
    return std::string(text);
}

} // namespace velmora
