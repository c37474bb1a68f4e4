// Properties.h: string properties of a daemon object.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace velmora::pipewire {

using Properties = std::map<std::string, std::string, std::less<>>;

/// Empty when absent.
[[nodiscard]] std::string text(const Properties& properties, std::string_view key);
/// None when absent or not a plain decimal number.
[[nodiscard]] std::optional<std::uint64_t> number(const Properties& properties,
                                                  std::string_view key);
/// False when absent.
[[nodiscard]] bool flag(const Properties& properties, std::string_view key);

} // namespace velmora::pipewire
