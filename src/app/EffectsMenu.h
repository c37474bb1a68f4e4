// EffectsMenu.h: one source's effects as rows to adjust.
#pragma once

#include "app/TerminalMenu.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class AudioEngine;
class AudioSource;

/// One row per effect with its present setting; adjusting writes through the engine.
/// @param t  the text lookup
[[nodiscard]] std::vector<MenuItem>
effectsItems(AudioEngine& engine,
             const AudioSource& source,
             const std::function<std::string(std::string_view)>& t);

} // namespace velmora
