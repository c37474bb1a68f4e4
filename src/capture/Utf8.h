// Utf8.h: text as code points.
#pragma once

#include <string>
#include <string_view>

namespace velmora {

/// A byte that is no part of a well-formed sequence becomes the code point of its own number.
[[nodiscard]] std::u32string codePoints(std::string_view utf8);

} // namespace velmora
