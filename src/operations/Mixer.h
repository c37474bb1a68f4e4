// Mixer.h: what the program is without windows.
#pragma once

#include "capture/DAWModeManager.h"
#include "capture/SourceManager.h"
#include "engine/AudioEngine.h"
#include "operations/MixerParts.h"
#include "operations/PushToTalk.h"
#include "operations/RightsNotice.h"
#include "operations/ShortcutKeys.h"
#include "platform/Platform.h"
#include "presets/PresetRecall.h"
#include "presets/PresetStore.h"
#include "settings/AppSettings.h"

namespace velmora {

/// Owns what lives as long as the program does; worked by commands, by windows, or by both.
///
/// Threads: main.
class Mixer {
public:
    explicit Mixer(const Platform& platform);

    /// Brings back the last setup. To be called once.
    void start();

    [[nodiscard]] MixerParts parts();
    [[nodiscard]] DAWModeManager& dawMode() { return dawMode_; }
    [[nodiscard]] ShortcutKeys& shortcutKeys() { return keys_; }

private:
    Platform platform_;
    AudioEngine engine_;
    RightsNotice rights_{engine_, platform_.defaults};
    SourceManager sources_;
    PresetStore presetStore_;
    AppSettings settings_;
    DAWModeManager dawMode_;
    PresetRecall recall_;
    PushToTalk talk_{engine_};
    ShortcutKeys keys_{parts()};
};

} // namespace velmora
