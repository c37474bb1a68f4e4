// The mixer: one program per session, which lives until the user quits.

#include "app/QuitSignals.h"
#include "app/RealPlatform.h"
#include "app/SingleInstance.h"
#include "app/VelmoraApp.h"
#include "settings/AppSettings.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <string>

#include <QApplication>
#include <QIcon>
#include <QMessageBox>

namespace {

/// The bus says who is open in this session. Without one, whoever writes to the settings is taken
/// for that; with one, it is a mixer of another session, beside which this one may run.
bool isOpenAlready(velmora::SingleInstance::Claim claim, const velmora::DefaultsStore& settings) {
    using namespace velmora;
    const bool isInUse = std::ranges::any_of(settings.problems(), [](const StoreProblem& problem) {
        return problem.kind == StoreProblem::Kind::inUse;
    });
    return claim == SingleInstance::Claim::second ||
           (claim == SingleInstance::Claim::unknown && isInUse);
}

velmora::ProgramVersion ownVersion() {
    const QString build = QStringLiteral(VELMORA_BUILD);
    return {.release = QStringLiteral(VELMORA_VERSION),
            .build = build.isEmpty() ? std::nullopt : std::optional(build)};
}

/// Ends this launch, for a user with a terminal and one without.
int refuse(const std::string& reason) {
    std::fputs(("velmora: " + reason + "\n").c_str(), stderr);
    QMessageBox::information(nullptr, "Velmora", QString::fromStdString(reason));
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    using namespace velmora;

    QApplication application(argc, argv);
    QApplication::setApplicationName("velmora");
    QApplication::setDesktopFileName("app.velmora.Velmora");
    QApplication::setWindowIcon(QIcon(":/qt/qml/Velmora/Kit/logo.svg"));
    QApplication::setQuitOnLastWindowClosed(false);

    SingleInstance instance;
    const SingleInstance::Claim claim = instance.claim();
    if (claim == SingleInstance::Claim::second && instance.raiseFirst()) {
        return 0;
    }
    std::optional<RealPlatform> machine(std::in_place);
    if (isOpenAlready(claim, machine->platform().defaults)) {
        const std::string reason = AppSettings(machine->platform()).t("Velmora est déjà ouvert.");
        machine.reset(); // the settings are free while the message stands
        return refuse(reason);
    }
    machine->audio().ensureVirtualMicrophone();
    VelmoraApp app(machine->platform(), ownVersion());
    QObject::connect(&instance, &SingleInstance::activated, &app, &VelmoraApp::open);
    const QuitSignals quitSignals([&] { app.quit(); });
    app.start();
    return QApplication::exec();
}
