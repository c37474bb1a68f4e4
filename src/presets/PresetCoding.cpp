#include "presets/PresetCoding.h"

#include "effects/FXParamsJson.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <utility>

namespace velmora {

namespace {

using Json = nlohmann::json;
using OrderedJson = nlohmann::ordered_json;

/// Deeper text is refused while it is parsed: no stack is ever at risk, neither here nor where the
/// parsed value is walked or destroyed.
constexpr int deepestNesting = 512;

constexpr auto kindNames = std::to_array<std::pair<PresetSource::Kind, std::string_view>>({
    {PresetSource::Kind::app, "app"},
    {PresetSource::Kind::device, "device"},
    {PresetSource::Kind::deviceChannels, "deviceChannels"},
});

struct CodingError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// -- writing --

std::string_view kindName(PresetSource::Kind kind) {
    return std::ranges::find(kindNames, kind, [](const auto& entry) { return entry.first; })
        ->second;
}

float finite(float value) {
    if (!std::isfinite(value)) {
        throw CodingError("number is not finite");
    }
    return value;
}

OrderedJson encoded(const PresetSource& source) {
    OrderedJson object;
    const auto add = [&object](const char* key, const auto& optional) {
        if (optional) {
            object[key] = *optional;
        }
    };
    object["kind"] = kindName(source.kind);
    object["name"] = source.name;
    add("bundleID", source.bundleID);
    add("deviceUID", source.deviceUID);
    add("first", source.first);
    add("count", source.count);
    object["gain"] = finite(source.gain);
    if (source.fx) {
        object["fx"] = toJson(*source.fx);
    }
    return object;
}

// -- reading --

template <typename T>
T decoded(const Json& value);

template <>
std::string decoded(const Json& value) {
    if (!value.is_string()) {
        throw CodingError("not a string");
    }
    return value.get<std::string>();
}

template <>
float decoded(const Json& value) {
    const auto number = value.is_number() ? value.get<double>() : std::nan("");
    if (!(std::abs(number) <= std::numeric_limits<float>::max())) {
        throw CodingError("not a single-precision number");
    }
    return static_cast<float>(number);
}

/// JSON has one kind of number: a writer may put 2 as 2.0.
template <>
std::int64_t decoded(const Json& value) {
    if (value.is_number_float()) {
        const auto number = value.get<double>();
        if (std::trunc(number) == number && number >= -0x1p63 && number < 0x1p63) {
            return static_cast<std::int64_t>(number);
        }
    } else if (value.is_number_unsigned() ? std::in_range<std::int64_t>(value.get<std::uint64_t>())
                                          : value.is_number_integer()) {
        return value.get<std::int64_t>();
    }
    throw CodingError("not a 64-bit integer");
}

template <>
PresetSource::Kind decoded(const Json& value) {
    const auto name = decoded<std::string>(value);
    const auto* const found =
        std::ranges::find(kindNames, name, [](const auto& entry) { return entry.second; });
    if (found == kindNames.end()) {
        throw CodingError("unknown kind");
    }
    return found->first;
}

template <>
Uuid decoded(const Json& value) {
    const auto uuid = Uuid::parse(decoded<std::string>(value));
    if (!uuid) {
        throw CodingError("not a UUID");
    }
    return *uuid;
}

template <>
FXParams decoded(const Json& value) {
    return fxParamsFromJson(OrderedJson(value));
}

/// Throws when the key is missing, or when `object` is not one.
template <typename T>
T required(const Json& object, const char* key) {
    return decoded<T>(object.at(key));
}

template <typename T>
std::optional<T> optional(const Json& object, const char* key) {
    const auto found = object.find(key);
    if (found == object.end() || found->is_null()) {
        return std::nullopt;
    }
    return decoded<T>(*found);
}

template <>
PresetSource decoded(const Json& object) {
    return {.kind = required<PresetSource::Kind>(object, "kind"),
            .name = required<std::string>(object, "name"),
            .bundleID = optional<std::string>(object, "bundleID"),
            .deviceUID = optional<std::string>(object, "deviceUID"),
            .first = optional<std::int64_t>(object, "first"),
            .count = optional<std::int64_t>(object, "count"),
            .gain = required<float>(object, "gain"),
            .fx = optional<FXParams>(object, "fx")};
}

template <typename T>
std::vector<T> decodedList(const Json& array) {
    if (!array.is_array()) {
        throw CodingError("not a list");
    }
    std::vector<T> list;
    for (const auto& element : array) {
        list.push_back(decoded<T>(element));
    }
    return list;
}

bool refuseDeepNesting(int depth, Json::parse_event_t /*event*/, Json& /*parsed*/) {
    if (depth >= deepestNesting) { // the outermost list is at depth 0
        throw CodingError("nested too deeply");
    }
    return true;
}

} // namespace

OrderedJson presetToJson(const Preset& preset) {
    auto sources = OrderedJson::array();
    for (const auto& source : preset.sources) {
        sources.push_back(encoded(source));
    }
    OrderedJson object;
    object["id"] = preset.id.string();
    object["name"] = preset.name;
    object["sources"] = std::move(sources);
    object["headphoneVolume"] = finite(preset.headphoneVolume);
    object["streamVolume"] = finite(preset.streamVolume);
    return object;
}

Preset presetFromJson(const Json& object) {
    return {.id = required<Uuid>(object, "id"),
            .name = required<std::string>(object, "name"),
            .sources = decodedList<PresetSource>(object.at("sources")),
            .headphoneVolume = required<float>(object, "headphoneVolume"),
            .streamVolume = required<float>(object, "streamVolume")};
}

Json parsedPresetText(std::string_view text) {
    return Json::parse(text, refuseDeepNesting);
}

std::string presetText(const OrderedJson& json, int indent) {
    return json.dump(indent, ' ', false, OrderedJson::error_handler_t::replace);
}

} // namespace velmora
