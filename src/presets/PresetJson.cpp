#include "presets/PresetJson.h"

#include "presets/PresetCoding.h"

#include <nlohmann/json.hpp>

#include <exception>

namespace velmora {

std::optional<std::string> encodePresets(std::span<const Preset> presets) {
    try {
        auto list = nlohmann::ordered_json::array();
        for (const auto& preset : presets) {
            list.push_back(presetToJson(preset));
        }
        return presetText(list, -1);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

std::optional<std::vector<Preset>> decodePresets(std::string_view json) {
    try {
        const auto list = parsedPresetText(json);
        if (!list.is_array()) {
            return std::nullopt;
        }
        std::vector<Preset> presets;
        for (const auto& element : list) {
            presets.push_back(presetFromJson(element));
        }
        return presets;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace velmora
