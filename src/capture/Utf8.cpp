#include "capture/Utf8.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace velmora {
namespace {

constexpr unsigned bitsPerContinuation = 6;

/// The sequence of `length` bytes at the start of `text`, if it is one.
std::optional<char32_t> sequenceOf(std::string_view text, std::size_t length) {
    constexpr unsigned continuationMark = 0b10;
    if (length < 2 || length > 4 || text.size() < length) {
        return std::nullopt;
    }
    const auto lead = static_cast<std::uint8_t>(text.front());
    char32_t point = lead & (0xFFU >> (length + 1));
    for (const char character : text.substr(1, length - 1)) {
        const auto byte = static_cast<std::uint8_t>(character);
        if (byte >> bitsPerContinuation != continuationMark) {
            return std::nullopt;
        }
        point = (point << bitsPerContinuation) | (byte & 0b0011'1111U);
    }
    return point;
}

} // namespace

std::u32string codePoints(std::string_view utf8) {
    std::u32string points;
    while (!utf8.empty()) {
        const auto lead = static_cast<std::uint8_t>(utf8.front());
        const auto length = static_cast<std::size_t>(std::countl_one(lead)); // 0 for ASCII
        const auto sequence = sequenceOf(utf8, length);
        points += sequence.value_or(lead);
        utf8.remove_prefix(sequence ? length : 1);
    }
    return points;
}

} // namespace velmora
