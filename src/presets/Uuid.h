// Uuid.h: an identity that is unique without asking anybody.
#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

/// A plain 128-bit value. Source: RFC 9562.
struct Uuid {
    std::array<std::uint8_t, 16> bytes{}; ///< in the order in which they are written

    auto operator<=>(const Uuid&) const = default;

    /// A fresh version 4 value. Threads: main.
    [[nodiscard]] static Uuid random();

    /// Reads the 36-character form, upper or lower case, of any version.
    [[nodiscard]] static std::optional<Uuid> parse(std::string_view text);

    /// The 36-character form in upper case, such as "F81D4FAE-7DEC-41D0-A765-00A0C91E6BF6".
    [[nodiscard]] std::string string() const;
};

} // namespace velmora
