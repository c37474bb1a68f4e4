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
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include <QCoreApplication>
#include <QLockFile>

namespace {

constexpr std::chrono::milliseconds redrawPeriod{50};

/// Two programs with one settings file would each keep writing their own idea of it.
QString lockPath() {
    const auto folder = velmora::SqliteDefaultsStore::defaultPath().parent_path();
    std::error_code ignored; // without a folder there is no lock, and the store tells why
    std::filesystem::create_directories(folder, ignored);
    return QString::fromStdString(folder / "velmora.lock");
}

int refuse(const std::string& reason) {
    std::fputs(("velmora: " + reason + "\n").c_str(), stderr);
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    using namespace velmora;

    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("velmora");
    const QuitSignals quitSignals([] { QCoreApplication::quit(); });

    // Outlives the store, which may have something to tell until its very end. Apart from the
    // engine's last error, which the next start clears.
    std::vector<StoreProblem> storeProblems;
    RealPlatform machine;
    const Platform platform = machine.platform();
    platform.defaults.setProblemListener(
        [&](const StoreProblem& problem) { storeProblems.push_back(problem); });
    AppSettings settings(platform);

    QLockFile onlyOne(lockPath());
    onlyOne.setStaleLockTime(0); // as long as its process lives
    if (!onlyOne.tryLock() && onlyOne.error() == QLockFile::LockFailedError) {
        return refuse(settings.t("Velmora est déjà ouvert."));
    }
    Terminal terminal;
    if (!terminal.isInteractive()) {
        return refuse(settings.t("Cette vue a besoin d'un terminal."));
    }

    machine.audio().ensureVirtualMicrophone();
    AudioEngine engine(platform);
    SourceManager sources(platform);
    PresetStore presets(platform.defaults);
    PresetRecall recall(platform, engine, settings);
    presets.restoreActive(recall);

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
        for (const StoreProblem& problem : storeProblems) {
            view.notices.push_back(storeProblemText(problem, settings));
        }
        terminal.draw(drawMixer(view, terminal.columns(), true));
    });
    return QCoreApplication::exec();
}
