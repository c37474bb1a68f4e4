// menu_benchmark.cpp: from the click on a source picker to the menu on the screen, with a hundred
// open applications and twenty devices of eight channels.
#include "LargeDesktop.h"

#include "capture/SourceManager.h"
#include "engine/AudioEngine.h"
#include "operations/PushToTalk.h"
#include "presets/PresetRecall.h"
#include "presets/PresetStore.h"
#include "settings/AppSettings.h"
#include "ui/Ui.h"
#include "ui/control/ControlWindowModel.h"
#include "ui/kit/Kit.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QImage>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <benchmark/benchmark.h>
#include <memory>

namespace {

using namespace velmora;

/// The control window's model with everything below it.
struct Mixer {
    explicit Mixer(LargeDesktop& desktop) : platform(desktop.platform()) {}

    Platform platform;
    AppSettings settings{platform};
    AudioEngine engine{platform};
    SourceManager sources{platform};
    PresetStore presets{platform.defaults};
    PresetRecall recall{platform, engine};
    PushToTalk talk{engine};
    ControlWindowModel model{{platform, engine, sources, presets, recall, settings, talk}};
};

void expectFullMenu(benchmark::State& state, const GumMenuModel& menu) {
    constexpr int fixedRows = 4; // choosing an application, and three captions
    if (menu.rowCount() != fixedRows + LargeDesktop::applicationCount + LargeDesktop::deviceCount) {
        state.SkipWithError("the menu is not complete");
    }
}

/// The first menu after the program's start reads every application anew.
void firstMenu(benchmark::State& state) {
    LargeDesktop desktop;
    for (auto _ : state) {
        state.PauseTiming();
        desktop.forgetApplications();
        auto mixer = std::make_unique<Mixer>(desktop);
        state.ResumeTiming();
        benchmark::DoNotOptimize(mixer->model.openExtraMenu());
        state.PauseTiming();
        expectFullMenu(state, *mixer->model.extraMenu());
        mixer.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(firstMenu)->Unit(benchmark::kMillisecond);

void laterMenu(benchmark::State& state) {
    LargeDesktop desktop;
    Mixer mixer(desktop);
    expectFullMenu(state, *mixer.model.openExtraMenu());
    for (auto _ : state) {
        benchmark::DoNotOptimize(mixer.model.openExtraMenu());
    }
}
BENCHMARK(laterMenu)->Unit(benchmark::kMillisecond);

/// What the user waits for: the lists, the rows in sight and their first picture.
void menuOnScreen(benchmark::State& state) {
    LargeDesktop desktop;
    Mixer mixer(desktop);
    QQmlEngine engine;
    installKit(engine, mixer.settings);
    installUi(engine);
    QQuickWindow window;
    window.resize(400, 700);
    window.show();
    QQmlComponent view(&engine);
    view.setData("import Velmora.Kit\nGumMenuView { width: 300; height: 380 }",
                 QUrl("qrc:/menu.qml"));
    for (auto _ : state) {
        auto* const menu = mixer.model.openExtraMenu();
        const std::unique_ptr<QObject> object(
            view.createWithInitialProperties({{"model", QVariant::fromValue(menu)}}));
        auto* const item = qobject_cast<QQuickItem*>(object.get());
        if (item == nullptr) {
            state.SkipWithError(view.errorString().toUtf8().constData());
            break;
        }
        item->setParentItem(window.contentItem());
        QCoreApplication::processEvents();
        benchmark::DoNotOptimize(window.grabWindow());
    }
}
BENCHMARK(menuOnScreen)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
