// FXParamsJson.h: effect settings as a part of a larger JSON document.
#pragma once

#include "effects/FXParams.h"

#include <nlohmann/json_fwd.hpp>

namespace velmora {

/// For those who link nlohmann-json; everyone else uses the text form in FXParams.h. Rules and
/// errors are the same there and here.
[[nodiscard]] nlohmann::ordered_json toJson(const FXParams& params);
[[nodiscard]] FXParams fxParamsFromJson(const nlohmann::ordered_json& json);

} // namespace velmora
