// FXParamsStore.h: the effect settings of all sources as one block of bytes.
#pragma once

#include "effects/FXParams.h"
#include "platform/DefaultsStore.h"

#include <map>
#include <optional>
#include <string>

namespace velmora {

/// By source id.
using FXParamsMap = std::map<std::string, FXParams>;

/// A JSON object: source id to effect settings. None when a value cannot be written as JSON.
[[nodiscard]] std::optional<Bytes> encodeFXParamsMap(const FXParamsMap& map);

/// Empty unless the whole can be read.
[[nodiscard]] FXParamsMap decodeFXParamsMap(const Bytes& bytes);

} // namespace velmora
