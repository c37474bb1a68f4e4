#include "platform/pipewire/view/Properties.h"

#include <charconv>

namespace velmora::pipewire {

std::string text(const Properties& properties, std::string_view key) {
    const auto found = properties.find(key);
    return found == properties.end() ? std::string{} : found->second;
}

std::optional<std::uint64_t> number(const Properties& properties, std::string_view key) {
    const auto found = properties.find(key);
    if (found == properties.end()) {
        return std::nullopt;
    }
    const std::string& digits = found->second;
    const char* const end = digits.data() + digits.size();
    std::uint64_t value{};
    const auto [stop, error] = std::from_chars(digits.data(), end, value);
    if (error != std::errc{} || stop != end) {
        return std::nullopt;
    }
    return value;
}

bool flag(const Properties& properties, std::string_view key) {
    const std::string value = text(properties, key);
    return value == "true" || value == "1";
}

} // namespace velmora::pipewire
