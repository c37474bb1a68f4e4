// PresetSnapshot.h: takes down the engine's setup.
#pragma once

#include "presets/Preset.h"

#include <string>

namespace velmora {

class AudioEngine;
class AudioDevices;

/// The engine's sources, their settings and both volumes, under a fresh id. A device whose UID
/// cannot be read now is kept without one.
/// Threads: main.
[[nodiscard]] Preset
snapshotPreset(const AudioEngine& engine, const AudioDevices& devices, std::string name);

} // namespace velmora
