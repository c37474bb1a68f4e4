// TextTable.h: French texts and what they read in English.
#pragma once

#include <initializer_list>
#include <map>
#include <optional>
#include <span>
#include <string_view>

namespace velmora {

/// Both in UTF-8.
struct TextPair {
    std::string_view french;
    std::string_view english;

    bool operator==(const TextPair&) const = default;
};

/// Finds the English text by the whole French one: exact, case-sensitive, byte by byte.
///
/// Threads: any, immutable after construction. The texts must outlive the table.
class TextTable {
public:
    /// Errors: a French text that occurs twice, in one list or in two, is a programming error; it
    /// is named on the error output and the program stops.
    explicit TextTable(std::initializer_list<std::span<const TextPair>> lists);

    [[nodiscard]] std::optional<std::string_view> english(std::string_view french) const;

private:
    std::map<std::string_view, std::string_view> englishByFrench_;
};

} // namespace velmora
