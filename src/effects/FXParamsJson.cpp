#include "effects/FXParamsJson.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>

namespace velmora {
namespace {

using Json = nlohmann::ordered_json;

[[noreturn]] void refuse(std::string_view key, std::string_view expected) {
    throw FXParamsError("effect parameter \"" + std::string(key) + "\" is not " +
                        std::string(expected));
}

void readBoolean(std::string_view key, const Json& value, bool& field) {
    if (!value.is_boolean()) {
        refuse(key, "a boolean");
    }
    field = value.get<bool>();
}

void readInteger(std::string_view key, const Json& value, std::int64_t& field) {
    // The parser hands integers beyond 64 bits over as the nearest double, which the bounds refuse.
    constexpr double twoTo63 = 9223372036854775808.0;
    if (value.is_number_unsigned()) {
        if (value.get<std::uint64_t>() > std::uint64_t{std::numeric_limits<std::int64_t>::max()}) {
            refuse(key, "a 64-bit integer");
        }
        field = value.get<std::int64_t>();
    } else if (value.is_number_integer()) {
        field = value.get<std::int64_t>();
    } else if (value.is_number_float()) {
        const auto number = value.get<double>();
        if (std::trunc(number) != number || number <= -twoTo63 || number >= twoTo63) {
            refuse(key, "a 64-bit integer");
        }
        field = static_cast<std::int64_t>(number);
    } else {
        refuse(key, "an integer");
    }
}

void readFloat(std::string_view key, const Json& value, float& field) {
    if (!value.is_number()) {
        refuse(key, "a number");
    }
    const auto number = static_cast<float>(value.get<double>());
    if (!std::isfinite(number)) {
        refuse(key, "a 32-bit number");
    }
    field = number;
}

template <typename Field>
void read(const Json& json,
          std::string_view key,
          void (*readKind)(std::string_view, const Json&, Field&),
          Field& field) {
    const auto found = json.find(key);
    if (found != json.end() && !found->is_null()) {
        readKind(key, *found, field);
    }
}

float finite(std::string_view key, float value) {
    if (!std::isfinite(value)) {
        refuse(key, "finite");
    }
    return value;
}

} // namespace

Json toJson(const FXParams& params) {
    return {
        {"lowcut", params.lowcut},
        {"tilt", finite("tilt", params.tilt)},
        {"comp", params.comp},
        {"autoGain", params.autoGain},
        {"manualDB", finite("manualDB", params.manualDB)},
        {"reverbChar", params.reverbChar},
        {"reverbMix", finite("reverbMix", params.reverbMix)},
        {"plosive", params.plosive},
        {"denoise", params.denoise},
    };
}

FXParams fxParamsFromJson(const Json& json) {
    if (!json.is_object()) {
        throw FXParamsError("effect parameters are not a JSON object");
    }
    FXParams params;
    read(json, "lowcut", readInteger, params.lowcut);
    read(json, "tilt", readFloat, params.tilt);
    read(json, "comp", readInteger, params.comp);
    read(json, "autoGain", readBoolean, params.autoGain);
    read(json, "manualDB", readFloat, params.manualDB);
    read(json, "reverbChar", readInteger, params.reverbChar);
    read(json, "reverbMix", readFloat, params.reverbMix);
    read(json, "plosive", readBoolean, params.plosive);
    read(json, "denoise", readBoolean, params.denoise);
    return params;
}

std::string encodeFXParams(const FXParams& params) {
    return toJson(params).dump();
}

FXParams decodeFXParams(std::string_view json) {
    try {
        return fxParamsFromJson(Json::parse(json));
    } catch (const Json::exception& error) {
        throw FXParamsError(error.what());
    }
}

} // namespace velmora
