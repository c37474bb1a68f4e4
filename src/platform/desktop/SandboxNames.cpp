#include "platform/desktop/SandboxNames.h"

#include "platform/desktop/Gio.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace velmora {

namespace {

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> pieces;
    while (true) {
        const auto end = text.find(separator);
        pieces.push_back(text.substr(0, end));
        if (end == std::string_view::npos) {
            return pieces;
        }
        text.remove_prefix(end + 1);
    }
}

/// Undoes systemd's escaping of unit names: "\x2d" is a dash.
std::string unescape(std::string_view text) {
    std::string plain;
    while (!text.empty()) {
        unsigned code = 0;
        const bool escape =
            text.size() >= 4 && text.starts_with("\\x") &&
            std::from_chars(text.data() + 2, text.data() + 4, code, 16).ptr == text.data() + 4;
        plain += escape ? static_cast<char>(code) : text.front();
        text.remove_prefix(escape ? 4 : 1);
    }
    return plain;
}

bool removeSuffix(std::string_view& text, std::string_view suffix) {
    const bool has = text.ends_with(suffix);
    if (has) {
        text.remove_suffix(suffix.size());
    }
    return has;
}

/// An id is a file name; what is none stands for no entry.
void addReading(std::string_view escaped, std::vector<std::string>& ids) {
    std::string id = unescape(escaped);
    if (!id.empty() && id.find('/') == std::string::npos) {
        ids.push_back(std::move(id));
    }
}

/// "gnome-org.player" gives "org.player", then "gnome-org.player".
void addReadings(std::string_view launcherAndId, std::vector<std::string>& ids) {
    auto start = launcherAndId.rfind('-');
    while (start != std::string_view::npos) {
        addReading(launcherAndId.substr(start + 1), ids);
        start = start == 0 ? std::string_view::npos : launcherAndId.rfind('-', start - 1);
    }
    addReading(launcherAndId, ids);
}

/// "player-web-<uuid>" gives "player-web": the application's own name may have dashes as well.
std::string_view withoutRandom(std::string_view name) {
    constexpr std::string_view pattern = "-xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
    const auto start = name.size() - std::min(name.size(), pattern.size());
    const auto tail = name.substr(start);
    const bool isUuid = std::ranges::equal(tail, pattern, [](char letter, char expected) {
        return expected == '-' ? letter == '-'
                               : std::string_view("0123456789abcdefABCDEF").find(letter) !=
                                     std::string_view::npos;
    });
    return name.substr(0, isUuid ? start : name.rfind('-'));
}

void addUnit(std::string_view unit, std::vector<std::string>& ids) {
    const bool isScope = removeSuffix(unit, ".scope");
    if (!isScope && !removeSuffix(unit, ".service")) {
        return;
    }
    if (unit.starts_with("snap.")) {
        const auto names = split(unit, '.');
        if (names.size() > 2) {
            // A scope's random part follows the application after a dot or a dash.
            const bool hasRandom = isScope && names.size() == 3;
            const auto application = hasRandom ? withoutRandom(names[2]) : names[2];
            ids.push_back(unescape(names[1]) + "_" + unescape(application));
        }
    } else if (unit.starts_with("app-")) {
        unit.remove_prefix(4);
        const auto random = isScope ? unit.rfind('-') : unit.find('@');
        addReadings(unit.substr(0, random), ids);
    }
}

} // namespace

std::vector<std::string> desktopIdsOfControlGroup(std::string_view content) {
    std::vector<std::string> ids;
    for (const std::string_view line : split(content, '\n')) {
        // "0::/user.slice/…/app-org.player-12.scope": the innermost unit that is one counts.
        const auto groups = split(line, '/');
        for (auto group = groups.rbegin(); group != groups.rend() && ids.empty(); ++group) {
            addUnit(*group, ids);
        }
    }
    return ids;
}

std::string flatpakApplication(const std::string& flatpakInfo) {
    const KeyFile file(g_key_file_new());
    g_key_file_load_from_data(
        file.get(), flatpakInfo.data(), flatpakInfo.size(), G_KEY_FILE_NONE, nullptr);
    const OwnedText name(g_key_file_get_string(file.get(), "Application", "name", nullptr));
    return name ? name.get() : "";
}

} // namespace velmora
