// NamedChoice.h: which one of a list a word means.
#pragma once

#include <cstddef>
#include <expected>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// One entry of a list that is shown with numbers.
struct NamedChoice {
    std::string id{};
    std::string name{};
    std::string alias{}; ///< a second id, which others may share
};

enum class NameMiss { none, several };

/// The entry with exactly this id, else with this alias, else with exactly this name, else with
/// this number (counted from 1), else the one whose name begins so in any case.
[[nodiscard]] std::expected<std::size_t, NameMiss> chosen(std::span<const NamedChoice> choices,
                                                          std::string_view word);

/// For each entry a word that means it alone: its name, or its id where others are called the same.
/// What would not stay on one line is left out.
[[nodiscard]] std::vector<std::string> distinctWords(std::span<const NamedChoice> choices);

} // namespace velmora
