// WindowScene.h: the core behind the control window, on a machine with things to mix.
#pragma once

#include "capture/SourceManager.h"
#include "engine/AudioEngine.h"
#include "operations/PushToTalk.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "presets/PresetRecall.h"
#include "presets/PresetStore.h"
#include "settings/AppSettings.h"
#include "ui/control/ControlWindowModel.h"
#include "ui/support/FakeFileChooser.h"

namespace velmora {

/// Threads: main.
class WindowScene {
public:
    /// Two applications that can be captured, one that is installed only, a microphone, an
    /// interface of four channels and a virtual input. Nothing is in the mix. Both outlive this
    /// object.
    WindowScene(SimulatedPlatform& machine, AppSettings& settings);

    /// A podcast as it may be set up, with a preset of that name.
    void mixPodcast();
    /// `count` applications with a plain setup each.
    void mixMany(int count);

    const AudioSource browser = AppSource{4711, "Web Browser", "org.browser"};
    const AudioSource player = AppSource{4712, "Music Player", "org.player"};

private:
    SimulatedPlatform& machine_;
    AudioObjectID speakers_;
    AudioObjectID virtualMic_;
    AudioObjectID microphone_;

public:
    const AudioSource interfaceInputs;
    AudioEngine engine;
    SourceManager sources;
    PresetStore presets;
    PresetRecall recall;
    PushToTalk talk;
    FakeFileChooser files;
    ControlWindowModel model;
};

} // namespace velmora
