// Texts.h: the program's own texts.
#pragma once

#include "settings/TextTable.h"

#include <span>

namespace velmora {

/// The interface's vocabulary. Its entries are fixed, French and English alike: other programs'
/// instructions and screenshots rely on them. New texts go to `addedTexts`.
[[nodiscard]] std::span<const TextPair> fixedTexts();

/// Everything else that is said to the user: accessible names, tooltips, sentences about trouble.
/// No French text is in both lists.
[[nodiscard]] std::span<const TextPair> addedTexts();

} // namespace velmora
