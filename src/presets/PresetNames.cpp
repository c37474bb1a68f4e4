#include "presets/PresetNames.h"

#include <algorithm>

namespace velmora {

namespace {

/// "Podcast" of "Podcast (2)"; a name without a number stays as it is.
std::string_view withoutNumber(std::string_view name) {
    constexpr std::string_view digits = "0123456789";
    if (!name.ends_with(')')) {
        return name;
    }
    const auto beforeNumber = name.find_last_not_of(digits, name.size() - 2);
    const bool hasNumber = beforeNumber != name.npos && beforeNumber + 2 < name.size();
    const auto head = hasNumber ? name.substr(0, beforeNumber + 1) : std::string_view();
    return head.size() > 2 && head.ends_with(" (") ? head.substr(0, head.size() - 2) : name;
}

} // namespace

std::string freePresetName(std::span<const Preset> presets, std::string_view wanted) {
    std::string name(wanted);
    for (int number = 2; std::ranges::find(presets, name, &Preset::name) != presets.end();
         ++number) {
        name = std::string(withoutNumber(wanted)) + " (" + std::to_string(number) + ")";
    }
    return name;
}

} // namespace velmora
