// The mixer: builds every long-lived object once and runs until the user quits.
#include "app/QuitSignals.h"
#include "app/RealPlatform.h"
#include "app/Terminal.h"
#include "app/TerminalMixer.h"
#include "capture/SourceManager.h"
#include "engine/AudioEngine.h"
#include "presets/PresetRecall.h"
#include "presets/PresetStore.h"
#include "settings/AppSettings.h"
#include "settings/StoreProblemText.h"

#include <chrono>
#include <cstdio>

#include <QCoreApplication>

namespace {

constexpr std::chrono::milliseconds redrawPeriod{50};

} // namespace

int main(int argc, char** argv) {
    using namespace velmora;

    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("velmora");
    const QuitSignals quitSignals([] { QCoreApplication::quit(); });

    RealPlatform machine;
    const Platform platform = machine.platform();
    machine.audio().ensureVirtualMicrophone();

    AppSettings settings(platform);
    AudioEngine engine(platform);
    SourceManager sources(platform);
    PresetStore presets(platform.defaults);
    PresetRecall recall(platform, engine, settings);

    platform.defaults.setProblemListener([&](const StoreProblem& problem) {
        engine.setLastError(storeProblemText(problem, settings));
    });
    presets.restoreActive(recall);

    Terminal terminal;
    if (!terminal.isInteractive()) {
        std::fputs("velmora: this view needs a terminal\n", stderr);
        return 1;
    }
    TerminalMixer mixer({platform, engine, sources, presets, recall, settings});
    const auto redraw = platform.mainQueue.every(redrawPeriod, [&] {
        for (const KeyPress& key : parseKeys(terminal.takeInput())) {
            mixer.press(key);
        }
        if (mixer.wantsToQuit()) {
            QCoreApplication::quit();
            return;
        }
        MixerView view = mixer.view();
        if (!machine.audio().connected()) {
            view.notices.push_back(settings.t("Service audio injoignable"));
        }
        terminal.draw(drawMixer(view, terminal.columns(), true));
    });
    return QCoreApplication::exec();
}
