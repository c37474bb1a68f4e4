#include "engine/FXParamsStore.h"

#include "effects/FXParamsJson.h"

#include <nlohmann/json.hpp>

#include <exception>

namespace velmora {
namespace {

using Json = nlohmann::ordered_json;

std::map<std::string, FXParams> decoded(const Bytes& bytes) {
    try {
        std::map<std::string, FXParams> map;
        const Json json = Json::parse(bytes);
        for (const auto& [id, params] : json.get_ref<const Json::object_t&>()) {
            map[id] = fxParamsFromJson(params);
        }
        return map;
    } catch (const std::exception&) {
        return {};
    }
}

std::optional<std::string> encodedMember(const std::string& id, const FXParams& params) {
    try {
        return Json(id).dump() + ":" + encodeFXParams(params);
    } catch (const std::exception&) {
        return std::nullopt; // a number that is not finite, or an id that is not UTF-8
    }
}

} // namespace

FXParamsStore::FXParamsStore(const Bytes& kept) : params_(decoded(kept)) {
    for (const auto& [id, params] : params_) {
        members_[id] = encodedMember(id, params);
    }
}

void FXParamsStore::set(const std::string& id, const FXParams& params) {
    if (params.isNeutral()) {
        params_.erase(id);
        members_.erase(id);
    } else {
        params_[id] = params;
        members_[id] = encodedMember(id, params);
    }
}

std::optional<Bytes> FXParamsStore::encoded() const {
    Bytes bytes{'{'};
    for (const auto& [id, member] : members_) {
        if (!member) {
            return std::nullopt;
        }
        if (bytes.size() > 1) {
            bytes.push_back(',');
        }
        bytes.insert(bytes.end(), member->begin(), member->end());
    }
    bytes.push_back('}');
    return bytes;
}

} // namespace velmora
