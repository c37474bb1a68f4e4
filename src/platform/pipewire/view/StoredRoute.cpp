#include "platform/pipewire/view/StoredRoute.h"

#include <array>
#include <iomanip>
#include <istream>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string_view>

namespace velmora::pipewire {
namespace {

constexpr std::array<std::string_view, 5> keyProperties = {
    "media.role", "application.id", "application.name", "media.name", "node.name"};

/// As the session manager writes keys: the file's own marks must not appear in them.
std::string escapedKey(const std::string& key) {
    std::string escaped;
    for (const char letter : key) {
        switch (letter) {
        case '\\':
            escaped += "\\\\";
            break;
        case ' ':
            escaped += "\\s";
            break;
        case '=':
            escaped += "\\e";
            break;
        case '[':
            escaped += "\\o";
            break;
        case ']':
            escaped += "\\c";
            break;
        default:
            escaped += letter;
        }
    }
    return escaped;
}

/// A value as the file has it, without its marks for blanks and backslashes.
std::string plainValue(std::string_view value) {
    std::string plain;
    for (std::size_t at = 0; at < value.size(); ++at) {
        if (value[at] != '\\' || at + 1 == value.size()) {
            plain += value[at];
            continue;
        }
        constexpr std::string_view marks = "sntr";
        constexpr std::string_view meanings = " \n\t\r";
        const std::size_t mark = marks.find(value[++at]);
        plain += mark == std::string_view::npos ? value[at] : meanings[mark];
    }
    return plain;
}

std::optional<std::string> targetInJson(const std::string& text) {
    constexpr bool throws = false;
    const auto json = nlohmann::json::parse(text, nullptr, throws);
    const auto target = json.find("target"); // its end in anything but an object
    return target != json.end() && target->is_string() ? std::optional(target->get<std::string>())
                                                       : std::nullopt;
}

} // namespace

std::ostream& operator<<(std::ostream& out, const RouteKey& key) {
    return out << std::quoted(key.property) << ' ' << std::quoted(key.value);
}

std::istream& operator>>(std::istream& in, RouteKey& key) {
    return in >> std::quoted(key.property) >> std::quoted(key.value);
}

RouteKey routeKey(const Properties& stream) {
    for (const std::string_view property : keyProperties) {
        if (const auto found = stream.find(property); found != stream.end()) {
            return {.property = std::string(property), .value = found->second};
        }
    }
    return {};
}

std::optional<std::string> storedDevice(std::istream& file, const RouteKey& key) {
    const std::string entry = escapedKey("Output/Audio:" + key.property + ":" + key.value);
    const std::string single = entry + ":target=";
    const std::string whole = entry + "=";
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(single)) {
            return plainValue(std::string_view(line).substr(single.size()));
        }
        if (line.starts_with(whole)) {
            return targetInJson(plainValue(std::string_view(line).substr(whole.size())));
        }
    }
    return std::nullopt;
}

} // namespace velmora::pipewire
