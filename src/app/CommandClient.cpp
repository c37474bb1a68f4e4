#include "app/CommandClient.h"

#include "app/BusNames.h"
#include "app/Display.h"
#include "operations/CommandTable.h"
#include "operations/LaunchRequest.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QEventLoop>
#include <QProcess>
#include <QTimer>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

namespace velmora {
namespace {

using namespace std::chrono_literals;

/// A mix of many sources takes a moment to start on a busy machine.
constexpr std::chrono::milliseconds answerWithin = 60s;
/// At a login everything starts at once.
constexpr std::chrono::milliseconds opensWithin = 30s;

void print(std::FILE* stream, const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fflush(stream);
}

bool isMixerThere() {
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(busService);
}

/// Nobody has the name, or had it when the call went out.
bool saysNobodyIsThere(const QDBusMessage& answer) {
    const auto type = QDBusError(answer).type();
    return type == QDBusError::ServiceUnknown ||
           answer.errorName() == "org.freedesktop.DBus.Error.NameHasNoOwner";
}

} // namespace

CommandClient::CommandClient(Lookup lookup) : lookup_(std::move(lookup)) {
}

int CommandClient::refuse(const std::string& sentence) const {
    velmora::print(stderr, "velmora: " + sentence + "\n");
    return 1;
}

int CommandClient::run(const LaunchRequest& request) {
    if (!QDBusConnection::sessionBus().isConnected()) {
        return refuse(lookup_("Le bus de la session est injoignable : aucun Velmora ne peut être "
                              "commandé."));
    }
    if (request.startsMixer && !isMixerThere() && !openMixer()) {
        return refuse(lookup_("Impossible d'ouvrir Velmora."));
    }
    return carryOut(request);
}

/// Waits until it is on the bus. Where there is no display, it mixes without one.
bool CommandClient::openMixer() const {
    QProcess mixer;
    mixer.setProgram(QCoreApplication::applicationFilePath());
    mixer.setArguments({hasDisplay() ? QStringLiteral("--hidden") : QStringLiteral("--headless")});
    // Whoever reads what the command prints must not wait for the mixer's end.
    mixer.setStandardInputFile(QProcess::nullDevice());
    mixer.setStandardOutputFile(QProcess::nullDevice());
    mixer.setStandardErrorFile(QProcess::nullDevice());
    QEventLoop waiting;
    QDBusServiceWatcher watcher(
        busService, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForRegistration);
    connect(&watcher, &QDBusServiceWatcher::serviceRegistered, &waiting, &QEventLoop::quit);
    QTimer::singleShot(opensWithin, &waiting, &QEventLoop::quit);
    if (!mixer.startDetached()) {
        return false;
    }
    if (!isMixerThere()) { // somebody else may have opened it meanwhile
        waiting.exec();
    }
    return isMixerThere();
}

int CommandClient::carryOut(const LaunchRequest& request) {
    QStringList words;
    std::error_code unknown; // a file is then named as it was written
    for (const std::string& word :
         withWholePaths(request.words, std::filesystem::current_path(unknown))) {
        words.append(QString::fromStdString(word));
    }
    asJson_ = words.contains("--json");
    const bool watches = words.contains("watch") && words.indexOf("watch") <= (asJson_ ? 1 : 0);
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (watches) {
        // Before the call: nothing that happens after it is missed.
        bus.connect(busService,
                    mixerPath,
                    mixerInterface,
                    QStringLiteral("Changed"),
                    this,
                    SLOT(print(QStringList, QString)));
    }
    auto call = QDBusMessage::createMethodCall(
        busService, mixerPath, mixerInterface, QStringLiteral("Run"));
    call.setAutoStartService(false);
    call << words;
    const QDBusMessage answer =
        bus.call(call, QDBus::Block, static_cast<int>(answerWithin.count()));
    if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().size() < 3) {
        return refuse(lookup_(
            saysNobodyIsThere(answer)
                ? "Velmora n'est pas ouvert. Avec --start, la commande l'ouvre d'abord, caché."
                : "Velmora ne répond pas."));
    }
    const int status = answer.arguments()[0].toInt();
    velmora::print(stdout, answer.arguments()[1].toString().toStdString());
    if (status != 0) {
        static_cast<void>(refuse(answer.arguments()[2].toString().toStdString()));
        return status;
    }
    return watches ? watch() : 0;
}

int CommandClient::watch() {
    QDBusServiceWatcher watcher(
        busService, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForUnregistration);
    connect(&watcher, &QDBusServiceWatcher::serviceUnregistered, this, &CommandClient::end);
    if (isMixerThere()) {
        QCoreApplication::exec();
    }
    return refuse(lookup_("Velmora s'est fermé."));
}

void CommandClient::print(const QStringList& lines, const QString& state) {
    if (asJson_) {
        velmora::print(stdout, state.toStdString() + "\n");
    }
    for (const QString& line : asJson_ ? QStringList() : lines) {
        velmora::print(stdout, line.toStdString() + "\n");
    }
}

void CommandClient::end() {
    QCoreApplication::exit();
}

} // namespace velmora
