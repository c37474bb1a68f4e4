#include "presets/Uuid.h"

#include <cstddef>
#include <random>

namespace velmora {

namespace {

constexpr std::string_view hexDigits = "0123456789ABCDEF";
constexpr std::size_t textLength = 36;

/// Whether the written form has a dash before this byte.
constexpr bool dashBefore(std::size_t byte) {
    return byte == 4 || byte == 6 || byte == 8 || byte == 10;
}

std::optional<std::uint8_t> hexValue(char digit) {
    if (digit >= 'a' && digit <= 'f') {
        digit = static_cast<char>(digit - 'a' + 'A');
    }
    const auto value = hexDigits.find(digit);
    if (value == std::string_view::npos) {
        return std::nullopt;
    }
    return static_cast<std::uint8_t>(value);
}

} // namespace

Uuid Uuid::random() {
    constexpr unsigned version4 = 0x40; // in the upper half of byte 6
    constexpr unsigned variant = 0x80;  // in the upper two bits of byte 8
    std::random_device source;
    std::uniform_int_distribution<unsigned> anyByte(0, 0xFF);
    Uuid uuid;
    for (std::uint8_t& byte : uuid.bytes) {
        byte = static_cast<std::uint8_t>(anyByte(source));
    }
    uuid.bytes[6] = static_cast<std::uint8_t>((uuid.bytes[6] & 0x0FU) | version4);
    uuid.bytes[8] = static_cast<std::uint8_t>((uuid.bytes[8] & 0x3FU) | variant);
    return uuid;
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
    if (text.size() != textLength) {
        return std::nullopt;
    }
    Uuid uuid;
    std::size_t next = 0;
    for (std::size_t byte = 0; byte < uuid.bytes.size(); ++byte) {
        if (dashBefore(byte) && text[next++] != '-') {
            return std::nullopt;
        }
        const auto high = hexValue(text[next++]);
        const auto low = hexValue(text[next++]);
        if (!high || !low) {
            return std::nullopt;
        }
        uuid.bytes[byte] = static_cast<std::uint8_t>((*high << 4U) | *low);
    }
    return uuid;
}

std::string Uuid::string() const {
    std::string text;
    text.reserve(textLength);
    for (std::size_t byte = 0; byte < bytes.size(); ++byte) {
        if (dashBefore(byte)) {
            text += '-';
        }
        text += hexDigits[bytes[byte] >> 4U];
        text += hexDigits[bytes[byte] & 0x0FU];
    }
    return text;
}

} // namespace velmora
