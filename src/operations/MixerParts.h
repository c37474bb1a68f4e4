// MixerParts.h: the mixer as those who operate it meet it.
#pragma once

#include "platform/Platform.h"

namespace velmora {

class AppSettings;
class AudioEngine;
class PresetRecall;
class PresetStore;
class PushToTalk;
class SourceManager;

/// All of them outlive whoever was given this value.
struct MixerParts {
    Platform platform;
    AudioEngine& engine;
    SourceManager& sources;
    PresetStore& presets;
    PresetRecall& recall;
    AppSettings& settings;
    PushToTalk& talk;
};

} // namespace velmora
