// MixWindow.h: the running mix in the mixer's own window.
#pragma once

#include "capture/SourceManager.h"
#include "operations/PushToTalk.h"
#include "platform/Platform.h"
#include "presets/PresetRecall.h"
#include "presets/PresetStore.h"
#include "settings/AppSettings.h"
#include "ui/control/ControlWindowModel.h"

#include <QQmlEngine>
#include <QQuickWindow>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace velmora {
class AudioEngine;
}

namespace velmora::demo {

/// The real control window over an engine that somebody else starts and stops.
///
/// Threads: main; needs a QApplication with a display.
class MixWindow {
public:
    /// Shows the window. Errors: throws std::runtime_error when it cannot be made.
    MixWindow(const Platform& platform, AudioEngine& engine);

    /// Writes what the window looks like now: light and dark, French and English, and with the
    /// effects of the first source open. Returns the files' names.
    /// Errors: throws std::runtime_error when a file cannot be written.
    std::vector<std::string> takePictures(const std::filesystem::path& folder);

    [[nodiscard]] QQuickWindow& window() { return *window_; }

private:
    Platform platform_;
    AppSettings settings_{platform_};
    SourceManager sources_{platform_};
    PresetStore presets_{platform_.defaults};
    PresetRecall recall_;
    PushToTalk talk_;
    ControlWindowModel model_;
    QQmlEngine qml_;
    std::unique_ptr<QQuickWindow> window_;
};

} // namespace velmora::demo
