// velmora-mixer: one program per session, which lives until the user quits. `velmora` becomes it,
// with the words that it was called with.

#include "app/QuitSignals.h"
#include "app/RealPlatform.h"
#include "app/RemoteMixer.h"
#include "app/SingleInstance.h"
#include "app/VelmoraApp.h"
#include "operations/LaunchRequest.h"
#include "operations/Mixer.h"
#include "settings/AppSettings.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include <QApplication>
#include <QCoreApplication>
#include <QIcon>
#include <QMessageBox>
#include <unistd.h>

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
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr) {
        QMessageBox::information(nullptr, "Velmora", QString::fromStdString(reason));
    }
    return 1;
}

/// Launchers of GLib before 2.76 name the permission of Wayland to come to the front as they do an
/// X11 launch, and Qt forgets that name as it starts.
void keepActivationToken() {
    constexpr const char* token = "XDG_ACTIVATION_TOKEN";
    const QByteArray launch = qgetenv("DESKTOP_STARTUP_ID");
    if (qEnvironmentVariableIsEmpty(token) && !launch.isEmpty()) {
        qputenv(token, launch);
    }
}

std::unique_ptr<QCoreApplication>
applicationFor(velmora::LaunchRequest::Kind kind, int& argc, char** argv) {
    if (kind == velmora::LaunchRequest::Kind::headless) {
        return std::make_unique<QCoreApplication>(argc, argv);
    }
    auto application = std::make_unique<QApplication>(argc, argv);
    QApplication::setDesktopFileName("app.velmora.Velmora");
    QApplication::setWindowIcon(QIcon(":/qt/qml/Velmora/Kit/logo.svg"));
    QApplication::setQuitOnLastWindowClosed(false);
    return application;
}

/// Runs the program on its parts until it is quit.
template <typename App>
int runUntilQuit(App& app, velmora::RemoteMixer& remote, velmora::SingleInstance& instance) {
    using namespace velmora;
    // Not QCoreApplication::quit(): it asks every window whether it may be closed.
    const auto quit = [] { QCoreApplication::exit(0); };
    const QuitSignals quitSignals(quit);
    remote.attach(app.parts(), quit);
    QObject::connect(&instance, &SingleInstance::actionRequested, &remote, &RemoteMixer::act);
    app.start();
    const int status = QCoreApplication::exec();
    remote.detach();
    return status;
}

} // namespace

int main(int argc, char** argv) {
    using namespace velmora;

    const LaunchRequest request =
        launchRequest(std::span(argv, static_cast<std::size_t>(argc)).subspan(1));
    keepActivationToken();
    const auto application = applicationFor(request.kind, argc, argv);
    QCoreApplication::setApplicationName("velmora");

    RemoteMixer remote; // before the name: whoever sees that may call at once
    SingleInstance instance;
    const SingleInstance::Claim claim = instance.claim();
    const bool isSecond = claim == SingleInstance::Claim::second;
    if (isSecond && request.kind == LaunchRequest::Kind::windows && instance.raiseFirst()) {
        return 0;
    }
    if (isSecond && request.kind == LaunchRequest::Kind::hidden) {
        return 0; // it is open, and nobody wants to see it
    }
    std::optional<RealPlatform> machine(std::in_place);
    if (isOpenAlready(claim, machine->platform().defaults)) {
        const std::string reason = AppSettings(machine->platform()).t("Velmora est déjà ouvert.");
        machine.reset(); // the settings are free while the message stands
        return refuse(reason);
    }
    machine->audio().ensureVirtualMicrophone();
    if (request.kind == LaunchRequest::Kind::headless) {
        Mixer mixer(machine->platform());
        return runUntilQuit(mixer, remote, instance);
    }
    const bool isHidden = request.kind == LaunchRequest::Kind::hidden;
    std::optional<VelmoraApp> app(std::in_place,
                                  machine->platform(),
                                  ownVersion(),
                                  isHidden ? VelmoraApp::Start::hidden : VelmoraApp::Start::byHand);
    QObject::connect(&instance, &SingleInstance::activated, &*app, &VelmoraApp::open);
    const int status = runUntilQuit(*app, remote, instance);
    if (status == VelmoraApp::toBeStartedAgain) {
        app.reset();
        machine.reset(); // settings and sound are free for the next one
        execv("/proc/self/exe", argv);
    }
    return status;
}
