// window_pictures: draws the control window in its states and looks, one PNG file each, without a
// screen.
//
// window_pictures <folder> [<state>]       QT_SCALE_FACTOR chooses the pixels per point

#include "capture/DeviceQueries.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "settings/AppSettings.h"
#include "ui/Ui.h"
#include "ui/WindowPicture.h"
#include "ui/kit/Kit.h"
#include "ui/support/ItemSearch.h"
#include "ui/window/WindowScene.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTimer>
#include <QUrl>
#include <iostream>
#include <memory>

using namespace std::chrono_literals;

namespace velmora {

namespace {

constexpr double tallest = 1000; // points, of the window on the screen that is imagined

/// A fresh machine with its window, so that no state depends on the one before.
class Stage {
public:
    explicit Stage(const WindowLook& look) {
        settings_.setAppearance(look.appearance);
        settings_.setLanguage(look.language);
        installKit(engine_, settings_);
        installUi(engine_);
        auto made = makeWindow(engine_, QUrl("qrc:/qt/qml/Velmora/ControlWindow.qml"), scene.model);
        if (!made) {
            std::cerr << made.error();
            std::exit(1);
        }
        window_ = *std::move(made);
        window_->setProperty("tallest", tallest);
        window_->show();
        window_->requestActivate();
        settle();
    }

    /// Turns the machine's clock.
    void run(std::chrono::milliseconds duration) {
        machine.advance(duration);
        settle();
    }

    /// Presses what carries this objectName.
    void press(const QString& name) {
        QQuickItem* const item = findItem(*window_, name);
        if (item == nullptr) {
            std::cerr << "There is no " << name.toStdString() << ".\n";
            std::exit(1);
        }
        QMetaObject::invokeMethod(item, "clicked");
        settle();
    }

    /// Waits with the pointer over what carries this objectName.
    void hover(const QString& name) {
        QQuickItem& item = *findItem(*window_, name);
        const QPointF at = item.mapToScene({item.width() / 2, item.height() / 2});
        QMouseEvent event(QEvent::MouseMove, at, at, Qt::NoButton, {}, {});
        QCoreApplication::sendEvent(window_.get(), &event);
        QEventLoop waiting;
        QTimer::singleShot(1s, &waiting, &QEventLoop::quit);
        waiting.exec();
    }

    void key(Qt::Key key) {
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, {});
            QCoreApplication::sendEvent(window_.get(), &event);
        }
        settle();
    }

    void save(const QString& file) {
        const WindowLook look{settings_.appearance(), settings_.language()};
        if (!saveWindowPicture(*window_, settings_, look, file)) {
            std::cerr << "Could not write " << file.toStdString() << ".\n";
            std::exit(1);
        }
        std::cout << file.toStdString() << '\n';
    }

    SimulatedPlatform machine;

private:
    static void settle() {
        for (int round = 0; round < 3; ++round) {
            QCoreApplication::processEvents();
        }
    }

    AppSettings settings_{machine.platform()};

public:
    WindowScene scene{machine, settings_};

private:
    QQmlEngine engine_;
    std::unique_ptr<QQuickWindow> window_;
};

using Arrange = void (*)(Stage&);

struct State {
    const char* name;
    Arrange arrange;
};

void mixAndStart(Stage& stage) {
    stage.scene.mixPodcast();
    stage.scene.engine.start();
    stage.run(200ms);
}

void openEffects(Stage& stage) {
    mixAndStart(stage);
    stage.press("effectsButton");
}

const State states[] = {
    {"empty", [](Stage&) {}},
    {"mix", mixAndStart},
    {"effects", openEffects},
    {"lowcut",
     [](Stage& stage) {
         openEffects(stage);
         stage.press("lowcutTitle");
     }},
    {"tone",
     [](Stage& stage) {
         openEffects(stage);
         stage.press("tiltTitle");
     }},
    {"compression",
     [](Stage& stage) {
         openEffects(stage);
         stage.press("compTitle");
     }},
    {"reverb",
     [](Stage& stage) {
         openEffects(stage);
         stage.press("reverbTitle");
     }},
    {"gain",
     [](Stage& stage) {
         openEffects(stage);
         stage.scene.engine.setFX({.autoGain = false, .manualDB = 3}, stage.scene.browser);
         stage.press("gainTitle");
     }},
    {"focus",
     [](Stage& stage) {
         openEffects(stage);
         for (int presses = 0; presses < 8; ++presses) {
             stage.key(Qt::Key_Tab);
         }
     }},
    {"high-contrast",
     [](Stage& stage) {
         stage.machine.appearance.setLook({.isHighContrast = true});
         openEffects(stage);
     }},
    {"larger-texts",
     [](Stage& stage) {
         stage.machine.appearance.setLook({.textScale = 1.25});
         openEffects(stage);
         stage.press("compTitle");
     }},
    {"larger-menu",
     [](Stage& stage) {
         stage.machine.appearance.setLook({.textScale = 1.5});
         mixAndStart(stage);
         stage.press("addSource");
     }},
    {"source-menu",
     [](Stage& stage) {
         mixAndStart(stage);
         stage.press("sourcePicker");
     }},
    {"add-menu",
     [](Stage& stage) {
         mixAndStart(stage);
         stage.press("addSource");
     }},
    {"presets-menu",
     [](Stage& stage) {
         mixAndStart(stage);
         stage.press("presetPicker");
     }},
    {"preset-files",
     [](Stage& stage) {
         mixAndStart(stage);
         stage.press("presetFiles");
         stage.scene.model.presetFiles()->openMenu()->activate(1);
     }},
    {"imported",
     [](Stage& stage) {
         mixAndStart(stage);
         const QTemporaryDir folder;
         const QString file = folder.filePath("presets.json");
         stage.scene.model.presetFiles()->exportTo(file, stage.scene.presets.presets());
         stage.scene.model.presetFiles()->importFrom(file);
         stage.scene.model.presetFiles()->importFrom(folder.filePath("nowhere.json"));
         stage.run(0ms);
     }},
    {"save-prompt",
     [](Stage& stage) {
         mixAndStart(stage);
         Q_EMIT stage.scene.model.savePromptRequested();
     }},
    {"chooser",
     [](Stage& stage) {
         mixAndStart(stage);
         stage.scene.model.openExtraMenu()->activate(0);
     }},
    {"undo",
     [](Stage& stage) {
         mixAndStart(stage);
         stage.scene.model.savePreset("Podcast");
         stage.run(0ms);
     }},
    {"undo-focus",
     [](Stage& stage) {
         mixAndStart(stage);
         stage.press("removeButton");
         stage.key(Qt::Key_Backtab);
         stage.key(Qt::Key_Backtab);
     }},
    {"tip",
     [](Stage& stage) {
         mixAndStart(stage);
         stage.hover("monitoringButton");
     }},
    {"tells",
     [](Stage& stage) {
         stage.scene.mixPodcast();
         stage.scene.engine.setGain(1.0F, stage.scene.browser);
         stage.machine.sound.play(4711, constant(1.0F));
         stage.scene.engine.start();
         const AudioObjectID mic = *findMixMicrophone(stage.machine.devices);
         stage.machine.sound.record(4711, mic);
         stage.machine.sound.setVolume(mic, {.linear = 0.125F});
         stage.machine.quitApplication(4712);
         stage.machine.startApplication(6000, "Music Player", "org.player");
         stage.machine.sound.play(6000, sine(660, 0.25F));
         stage.scene.engine.setFxBypassed(true);
         stage.run(500ms);
     }},
    {"unheard",
     [](Stage& stage) {
         mixAndStart(stage);
         stage.run(3s);
     }},
    {"opening",
     [](Stage& stage) {
         mixAndStart(stage);
         stage.scene.model.openExtraMenu()->activate(0);
         stage.press("confirmChoice");
     }},
    {"problem",
     [](Stage& stage) {
         stage.scene.mixPodcast();
         stage.scene.engine.tell(
             ProblemOrigin::recall,
             {{.kind = Problem::Kind::notFound, .subject = "Interface — Entrées 3-4"},
              {.kind = Problem::Kind::tapRefused, .subject = "Web Browser", .status = -38}});
     }},
    {"push-to-talk",
     [](Stage& stage) {
         stage.scene.talk.setOn(true);
         mixAndStart(stage);
     }},
    {"not-launched",
     [](Stage& stage) {
         stage.scene.mixPodcast();
         stage.scene.engine.tell(
             ProblemOrigin::recall,
             {{.kind = Problem::Kind::notLaunched, .subject = "Video Call"},
              {.kind = Problem::Kind::inputNotStarted, .subject = "Microphone", .status = -16}});
     }},
    {"many",
     [](Stage& stage) {
         stage.scene.mixMany(12);
         stage.scene.engine.start();
         stage.run(200ms);
     }},
};

} // namespace

} // namespace velmora

int main(int argc, char** argv) {
    using namespace velmora;
    if (argc < 2) {
        std::cerr << "window_pictures <folder> [<state>]\n";
        return 2;
    }
    const QTemporaryDir runtimeFolder;
    qputenv("XDG_RUNTIME_DIR", runtimeFolder.path().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QApplication application(argc, argv);
    const QDir folder(argv[1]);
    for (const State& state : states) {
        if (argc > 2 && QString(argv[2]) != state.name) {
            continue;
        }
        for (const char* appearance : {"light", "dark"}) {
            for (const char* language : {"fr", "en"}) {
                Stage stage({appearance, language});
                state.arrange(stage);
                stage.save(
                    folder.filePath(QString("%1-%2-%3.png").arg(state.name, appearance, language)));
            }
        }
    }
    return 0;
}
