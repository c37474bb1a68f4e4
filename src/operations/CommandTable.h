// CommandTable.h: every command of the program, its words and what it does.
#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// Help, manual, completions and the check of a command's words are all made of this.
struct CommandInfo {
    std::string_view name;      ///< one word or two: "gain", "preset apply"
    std::string_view arguments; ///< "SOURCE [on|off|toggle]"; brackets = may be left out
    std::size_t least{};        ///< how many words follow the name
    std::size_t most{};
    std::string_view summary; ///< French; looked up
    std::string_view json{};  ///< the shape of what --json prints, in English; empty = nothing
};

[[nodiscard]] std::span<const CommandInfo> commandTable();

/// "gain SOURCE DB"
[[nodiscard]] std::string usageOf(const CommandInfo& command);

/// The command that these words begin with; two words are looked for before one. Null = none.
[[nodiscard]] const CommandInfo* commandOf(std::span<const std::string> words);
/// How many words its name has.
[[nodiscard]] std::size_t nameWords(const CommandInfo& command);

/// A file among the words is named from the root: whoever carries the command out is in another
/// folder than the user.
[[nodiscard]] std::vector<std::string> withWholePaths(std::vector<std::string> words,
                                                      const std::filesystem::path& folder);

struct OptionInfo {
    std::string_view name; ///< "--json"
    std::string_view summary;
};

[[nodiscard]] std::span<const OptionInfo> optionTable();

} // namespace velmora
