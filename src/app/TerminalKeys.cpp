#include "app/TerminalKeys.h"

#include <algorithm>
#include <cstdint>

namespace velmora {
namespace {

constexpr char escapeByte = '\x1b';

std::size_t codePointLength(char first) {
    const auto byte = static_cast<std::uint8_t>(first);
    return byte < 0x80U ? 1 : byte < 0xE0U ? 2 : byte < 0xF0U ? 3 : 4;
}

/// Length of the control sequence that starts at `bytes` (escape, '[' or 'O', parameters, final
/// byte), or 1 for a lone escape.
std::size_t sequenceLength(std::string_view bytes) {
    if (bytes.size() < 3 || (bytes[1] != '[' && bytes[1] != 'O')) {
        return 1;
    }
    const auto final = std::find_if(
        bytes.begin() + 2, bytes.end(), [](char byte) { return byte >= '@' && byte <= '~'; });
    return final == bytes.end() ? bytes.size()
                                : static_cast<std::size_t>(final - bytes.begin()) + 1;
}

void appendSequence(std::string_view sequence, std::vector<KeyPress>& keys) {
    using Kind = KeyPress::Kind;
    if (sequence.size() == 1) {
        keys.push_back({Kind::escape, {}});
        return;
    }
    switch (sequence.back()) {
    case 'A':
        keys.push_back({Kind::up, {}});
        break;
    case 'B':
        keys.push_back({Kind::down, {}});
        break;
    case 'C':
        keys.push_back({Kind::right, {}});
        break;
    case 'D':
        keys.push_back({Kind::left, {}});
        break;
    default:
        break;
    }
}

} // namespace

std::vector<KeyPress> parseKeys(std::string_view bytes) {
    std::vector<KeyPress> keys;
    while (!bytes.empty()) {
        const char first = bytes.front();
        std::size_t length = 1;
        if (first == escapeByte) {
            length = sequenceLength(bytes);
            appendSequence(bytes.substr(0, length), keys);
        } else if (first == '\r' || first == '\n') {
            keys.push_back({KeyPress::Kind::enter, {}});
        } else if (first == '\x7f' || first == '\b') {
            keys.push_back({KeyPress::Kind::backspace, {}});
        } else if (static_cast<std::uint8_t>(first) >= 0x20U) {
            length = std::min(codePointLength(first), bytes.size());
            keys.push_back({KeyPress::Kind::character, std::string(bytes.substr(0, length))});
        }
        bytes.remove_prefix(length);
    }
    return keys;
}

} // namespace velmora
