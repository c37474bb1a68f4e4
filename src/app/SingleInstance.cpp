#include "app/SingleInstance.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QMetaMethod>

namespace velmora {
namespace {

const QString service = QStringLiteral("app.velmora.Velmora");
const QString path = QStringLiteral("/app/velmora/Velmora");
const QString interface = QStringLiteral("org.freedesktop.Application");
const QString activationToken = QStringLiteral("activation-token");
const QString startupId = QStringLiteral("desktop-startup-id");

constexpr int answerMilliseconds = 10000; // the first one may be starting

/// What the desktop gave to this launch, so that the first program's window may come to the front.
QVariantMap launchData() {
    return {{activationToken, qEnvironmentVariable("XDG_ACTIVATION_TOKEN")},
            {startupId, qEnvironmentVariable("DESKTOP_STARTUP_ID")}};
}

} // namespace

SingleInstance::SingleInstance(QObject* parent)
    : QObject(parent), bus_(QDBusConnection::sessionBus()) {
}

SingleInstance::~SingleInstance() {
    if (isClaimed_) {
        bus_.unregisterService(service);
        bus_.unregisterObject(path);
    }
}

SingleInstance::Claim SingleInstance::claim() {
    if (!bus_.isConnected()) {
        return Claim::unknown;
    }
    // The object first: whoever sees the name may call it at once.
    bus_.registerObject(path, this, QDBusConnection::ExportScriptableSlots);
    isClaimed_ = bus_.registerService(service);
    if (isClaimed_) {
        return Claim::first;
    }
    bus_.unregisterObject(path);
    return bus_.interface()->isServiceRegistered(service) ? Claim::second : Claim::unknown;
}

bool SingleInstance::raiseFirst() {
    auto call =
        QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Activate"));
    call << launchData();
    const QDBusMessage answer = bus_.call(call, QDBus::Block, answerMilliseconds);
    return answer.type() == QDBusMessage::ReplyMessage;
}

void SingleInstance::Activate(const QVariantMap& platformData) {
    if (isSignalConnected(QMetaMethod::fromSignal(&SingleInstance::activated))) {
        Q_EMIT activated(platformData.value(activationToken).toString());
    } else if (calledFromDBus()) {
        sendErrorReply(QDBusError::NotSupported, QStringLiteral("there are no windows"));
    }
}

void SingleInstance::Open(const QStringList& /*uris*/, const QVariantMap& platformData) {
    Activate(platformData);
}

void SingleInstance::ActivateAction(const QString& action,
                                    const QVariantList& /*parameters*/,
                                    const QVariantMap& /*platformData*/) {
    Q_EMIT actionRequested(action);
}

} // namespace velmora
