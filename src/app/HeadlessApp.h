// HeadlessApp.h: the program without windows.
#pragma once

#include "capture/DAWModeManager.h"
#include "capture/SourceManager.h"
#include "engine/AudioEngine.h"
#include "operations/MixerParts.h"
#include "platform/Platform.h"
#include "presets/PresetRecall.h"
#include "presets/PresetStore.h"
#include "settings/AppSettings.h"

namespace velmora {

/// The whole mix for a machine that nobody looks at, worked by commands alone.
///
/// Threads: main; needs a QCoreApplication.
class HeadlessApp {
public:
    explicit HeadlessApp(const Platform& platform);

    /// Brings back the last setup. To be called once.
    void start();

    [[nodiscard]] MixerParts parts();

private:
    Platform platform_;
    AudioEngine engine_;
    SourceManager sources_;
    PresetStore presetStore_;
    AppSettings settings_;
    DAWModeManager dawMode_;
    PresetRecall recall_;
};

} // namespace velmora
