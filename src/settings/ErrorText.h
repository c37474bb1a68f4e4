// ErrorText.h: an engine's error in the user's language.
#pragma once

#include <string>
#include <string_view>

namespace velmora {

class AppSettings;

/// Looks up the sentences of `lastError`, line by line. A line may name a source before its
/// sentence ("name : sentence") and end in a status (" (err N)"); both stay. Sentences without a
/// translation stay as they are.
[[nodiscard]] std::string errorText(std::string_view lastError, const AppSettings& settings);

} // namespace velmora
