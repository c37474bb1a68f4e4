// The mixer: one program per session, which lives until the user quits.

#include "app/QuitSignals.h"
#include "app/RealPlatform.h"
#include "app/SingleInstance.h"
#include "app/VelmoraApp.h"
#include "settings/AppSettings.h"

#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>

#include <QApplication>
#include <QIcon>
#include <QLockFile>
#include <QMessageBox>

namespace {

/// Two programs with one settings file would each keep writing their own idea of it.
QString lockPath() {
    const auto folder = velmora::SqliteDefaultsStore::defaultPath().parent_path();
    std::error_code ignored; // without a folder there is no lock, and the store tells why
    std::filesystem::create_directories(folder, ignored);
    return QString::fromStdString(folder / "velmora.lock");
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
    const bool isSecond = instance.claim() == SingleInstance::Claim::second;
    if (isSecond && instance.raiseFirst()) {
        return 0;
    }
    QLockFile onlyOne(lockPath());
    onlyOne.setStaleLockTime(0); // as long as its process lives
    const bool isLocked = !onlyOne.tryLock() && onlyOne.error() == QLockFile::LockFailedError;

    RealPlatform machine;
    if (isSecond || isLocked) {
        const AppSettings settings(machine.platform());
        return refuse(settings.t("Velmora est déjà ouvert."));
    }
    machine.audio().ensureVirtualMicrophone();
    VelmoraApp app(machine.platform(), ownVersion());
    QObject::connect(&instance, &SingleInstance::activated, &app, &VelmoraApp::open);
    const QuitSignals quitSignals([&] { app.quit(); });
    app.start();
    return QApplication::exec();
}
