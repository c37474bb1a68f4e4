#include "presets/PresetFile.h"

#include "presets/PresetCoding.h"

#include <nlohmann/json.hpp>

#include <exception>

namespace velmora {

namespace {

constexpr std::string_view format = "Velmora presets";
constexpr int version = 1;
constexpr int indent = 2; // spaces

} // namespace

std::optional<std::string> encodePresetFile(std::span<const Preset> presets) {
    try {
        auto list = nlohmann::ordered_json::array();
        for (const Preset& preset : presets) {
            list.push_back(presetToJson(preset));
        }
        nlohmann::ordered_json file;
        file["format"] = format;
        file["version"] = version;
        file["presets"] = std::move(list);
        return presetText(file, indent) + "\n";
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

std::expected<std::vector<Preset>, PresetFileFault> decodePresetFile(std::string_view text) {
    constexpr auto unreadable = std::unexpected(PresetFileFault::unreadable);
    try {
        if (text.size() > largestPresetFile) {
            return unreadable;
        }
        const auto file = parsedPresetText(text);
        const auto& itsVersion = file.at("version");
        if (file.at("format") != format || !itsVersion.is_number_integer() || itsVersion < 1) {
            return unreadable;
        }
        if (itsVersion > version) {
            return std::unexpected(PresetFileFault::newer);
        }
        const auto& list = file.at("presets");
        if (!list.is_array() || list.empty()) {
            return unreadable;
        }
        std::vector<Preset> presets;
        for (const auto& element : list) {
            presets.push_back(presetFromJson(element));
        }
        return presets;
    } catch (const std::exception&) {
        return unreadable;
    }
}

} // namespace velmora
