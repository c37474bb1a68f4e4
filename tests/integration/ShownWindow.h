// ShownWindow.h: the control window of a real mixer, used as a person does.
#pragma once

#include "app/RealPlatform.h"
#include "capture/SourceManager.h"
#include "engine/AudioEngine.h"
#include "operations/PushToTalk.h"
#include "presets/PresetRecall.h"
#include "presets/PresetStore.h"
#include "settings/AppSettings.h"
#include "ui/control/ControlWindowModel.h"
#include "ui/support/Pointer.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QString>
#include <filesystem>
#include <memory>
#include <optional>

namespace velmora {

/// A whole mixer behind its window. Whatever is looked for is waited for; what never appears fails
/// the test.
///
/// Threads: main.
class ShownWindow {
public:
    explicit ShownWindow(const std::filesystem::path& settingsFile);

    /// By objectName or accessible name, inside `within` or anywhere in the window.
    QQuickItem& find(const QString& name, QQuickItem* within = nullptr);
    QQuickItem& strip(int index) { return find(QStringLiteral("strip%1").arg(index)); }

    void click(const QString& name, QQuickItem* within = nullptr);
    /// Of the menu that is open.
    void choose(const QString& entry);
    /// A drag of the fader in this part of the window, from wherever to where it means `db`.
    void dragFader(QQuickItem& part, double db);
    void type(const QString& text);

    [[nodiscard]] AudioEngine& engine() { return engine_; }
    [[nodiscard]] ControlWindowModel& model() { return model_; }

private:
    [[nodiscard]] QQuickItem& content() const { return *window_->contentItem(); }

    RealPlatform machine_;
    Platform platform_ = machine_.platform();
    AppSettings settings_{platform_};
    AudioEngine engine_{platform_};
    SourceManager sources_{platform_};
    PresetStore presets_{platform_.defaults};
    PresetRecall recall_{platform_, engine_};
    PushToTalk talk_{engine_};
    ControlWindowModel model_{{platform_, engine_, sources_, presets_, recall_, settings_, talk_}};
    QQmlEngine qml_;
    std::unique_ptr<QQuickWindow> window_;
    std::optional<Pointer> pointer_;
    QQuickItem missing_;
};

} // namespace velmora
