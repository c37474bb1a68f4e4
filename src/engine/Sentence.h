// Sentence.h: puts names and numbers into a text that was looked up.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace velmora {

/// Replaces each placeholder, such as "{name}", in one pass: a name that looks like a placeholder
/// stays as it is.
[[nodiscard]] inline std::string
filled(std::string_view text,
       std::initializer_list<std::pair<std::string_view, std::string_view>> insertions) {
    std::string result;
    while (!text.empty()) {
        std::string_view consumed = text.substr(0, 1);
        std::string_view added = consumed;
        for (const auto& [placeholder, value] : insertions) {
            if (text.starts_with(placeholder)) {
                consumed = placeholder;
                added = value;
            }
        }
        result += added;
        text.remove_prefix(consumed.size());
    }
    return result;
}

} // namespace velmora
