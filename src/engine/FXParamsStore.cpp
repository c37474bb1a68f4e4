#include "engine/FXParamsStore.h"

#include "effects/FXParamsJson.h"

#include <nlohmann/json.hpp>

#include <exception>

namespace velmora {

using Json = nlohmann::ordered_json;

std::optional<Bytes> encodeFXParamsMap(const FXParamsMap& map) {
    try {
        Json json = Json::object();
        for (const auto& [id, params] : map) {
            json[id] = toJson(params);
        }
        const std::string text = json.dump();
        return Bytes(text.begin(), text.end());
    } catch (const std::exception&) {
        return std::nullopt; // a number that is not finite, or an id that is not UTF-8
    }
}

FXParamsMap decodeFXParamsMap(const Bytes& bytes) {
    try {
        FXParamsMap map;
        const Json json = Json::parse(bytes);
        for (const auto& [id, params] : json.get_ref<const Json::object_t&>()) {
            map[id] = fxParamsFromJson(params);
        }
        return map;
    } catch (const std::exception&) {
        return {};
    }
}

} // namespace velmora
