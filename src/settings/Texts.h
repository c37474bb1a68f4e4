// Texts.h: the program's own texts.
#pragma once

#include "settings/TextTable.h"

#include <span>
#include <string_view>

namespace velmora {

/// The interface's vocabulary. Its entries are fixed, French and English alike: other programs'
/// instructions and screenshots rely on them. New texts go to `addedTexts`.
[[nodiscard]] std::span<const TextPair> fixedTexts();

/// Everything else that is said to the user: accessible names, tooltips, sentences about trouble.
/// No French text is in both lists.
[[nodiscard]] std::span<const TextPair> addedTexts();

/// What commands print, refuse and explain. No French text of the other lists is here.
[[nodiscard]] std::span<const TextPair> commandTexts();

/// The English of a text of any list; a text that is in none comes back unchanged.
[[nodiscard]] std::string_view inEnglish(std::string_view french);

} // namespace velmora
