// DefaultsCoding.h: how one value is laid out in its row.
#pragma once

#include "platform/DefaultsStore.h"

#include <cstdint>
#include <optional>
#include <span>

namespace velmora {

/// A value as it is stored. The numbers are kept in users' files and never change their meaning.
struct CodedValue {
    enum class Type : std::int64_t {
        boolean = 1,   ///< one byte, 0 or 1
        number = 2,    ///< the 8 bytes of a double, least significant first; keeps NaN and infinity
        string = 3,    ///< the bytes as they are
        bytes = 4,     ///< the same
        numberMap = 5, ///< per entry: key length (4 bytes, least significant first), key, number
        booleanMap = 6, ///< per entry: key length, key, boolean
    };
    Type type{};
    Bytes bytes;
};

[[nodiscard]] CodedValue encode(const DefaultsValue& value);

/// None when the type is unknown or the bytes are not of that type.
[[nodiscard]] std::optional<DefaultsValue> decode(CodedValue::Type type,
                                                  std::span<const std::uint8_t> bytes);

} // namespace velmora
