// TerminalKeys.h: what a terminal sends, as key presses.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velmora {

struct KeyPress {
    enum class Kind { up, down, left, right, enter, escape, backspace, character };
    Kind kind{};
    std::string text; ///< one UTF-8 code point (`character` only)

    bool operator==(const KeyPress&) const = default;
};

/// The key presses in a run of bytes as one read delivers them. Sequences that are not known are
/// dropped whole; a lone escape byte is the escape key.
[[nodiscard]] std::vector<KeyPress> parseKeys(std::string_view bytes);

} // namespace velmora
