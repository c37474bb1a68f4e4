#include "platform/pipewire/view/StoredRoute.h"

#include <array>
#include <charconv>
#include <iomanip>
#include <istream>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string_view>
#include <system_error>

namespace velmora::pipewire {
namespace {

constexpr std::string_view roleProperty = "media.role";
constexpr std::array<std::string_view, 5> keyProperties = {
    roleProperty, "application.id", "application.name", "media.name", "node.name"};

using Version = std::array<unsigned, 3>;
constexpr Version firstWithoutOtherRoles{0, 5, 15};

/// Up to the first part that is no number.
Version versionIn(std::string_view text) {
    Version version{};
    const char* at = text.data();
    const char* const end = at + text.size();
    for (unsigned& part : version) {
        const auto [next, error] = std::from_chars(at, end, part);
        if (error != std::errc{} || next == end || *next != '.') {
            break;
        }
        at = next + 1;
    }
    return version;
}

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

RoleKeys roleKeysOf(const Properties& properties) {
    return versionIn(text(properties, "application.version")) < firstWithoutOtherRoles
               ? RoleKeys::every
               : RoleKeys::notification;
}

RouteKey routeKey(const Properties& stream, RoleKeys roles) {
    for (const std::string_view property : keyProperties) {
        const auto found = stream.find(property);
        const bool counts =
            found != stream.end() && (property != roleProperty || roles == RoleKeys::every ||
                                      found->second == "Notification");
        if (counts) {
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
