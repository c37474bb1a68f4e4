#include "platform/desktop/PortalShortcuts.h"

#include "platform/desktop/PortalRequest.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QList>
#include <QVariantList>
#include <utility>

namespace velmora {

/// As they go to and fro, "(sa{sv})".
struct ToldShortcut {
    QString id;
    QVariantMap details;
};

static QDBusArgument& operator<<(QDBusArgument& argument, const ToldShortcut& shortcut) {
    argument.beginStructure();
    argument << shortcut.id << shortcut.details;
    argument.endStructure();
    return argument;
}

static const QDBusArgument& operator>>(const QDBusArgument& argument, ToldShortcut& shortcut) {
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.details;
    argument.endStructure();
    return argument;
}

namespace {

const QString interface = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");
const QString sessionInterface = QStringLiteral("org.freedesktop.portal.Session");
const QString registry = QStringLiteral("org.freedesktop.host.portal.Registry");
/// The desktop entry's; some portals have shortcuts only for programs that they know.
const QString programId = QStringLiteral("app.velmora.Velmora");
/// The same at every launch: some desktops keep the keys under it.
const QString sessionToken = QStringLiteral("velmora");

QDBusConnection ownConnection(const QString& address, const QString& name) {
    return address.isEmpty() ? QDBusConnection::connectToBus(QDBusConnection::SessionBus, name)
                             : QDBusConnection::connectToBus(address, name);
}

} // namespace

PortalShortcuts::PortalShortcuts(const QString& busAddress,
                                 std::vector<GlobalShortcut> shortcuts,
                                 Listener listener)
    : name_(portalToken()), bus_(ownConnection(busAddress, name_)),
      shortcuts_(std::move(shortcuts)), listener_(std::move(listener)) {
    qDBusRegisterMetaType<ToldShortcut>();
    qDBusRegisterMetaType<QList<ToldShortcut>>();
    introduce();
}

PortalShortcuts::~PortalShortcuts() {
    QDBusConnection::disconnectFromBus(name_);
}

void PortalShortcuts::close() {
    hasEnded_ = true;
    if (!session_.isEmpty()) {
        bus_.send(
            QDBusMessage::createMethodCall(portalService, session_, sessionInterface, "Close"));
    }
}

/// Portals that do not know the question find the name out by themselves, or need none.
void PortalShortcuts::introduce() {
    auto call = QDBusMessage::createMethodCall(portalService, portalPath, registry, "Register");
    call << programId << QVariantMap();
    auto* const answer =
        new QDBusPendingCallWatcher(bus_.asyncCall(call, portalAnswerMilliseconds), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        if (!hasEnded_) {
            create();
        }
    });
}

void PortalShortcuts::create() {
    new PortalRequest(
        bus_,
        {.interface = interface,
         .method = "CreateSession",
         .options = {{"session_handle_token", sessionToken}}},
        [this](uint response, const QVariantMap& results) {
            const QVariant session = results.value("session_handle");
            // Portals have sent it as either.
            const QString path = session.canConvert<QDBusObjectPath>()
                                     ? session.value<QDBusObjectPath>().path()
                                     : session.toString();
            if (response != PortalRequest::done || path.isEmpty()) {
                end(response == PortalRequest::cancelled);
            } else {
                bind(path);
            }
        },
        this);
}

void PortalShortcuts::bind(const QString& session) {
    session_ = session;
    if (hasEnded_) {
        close(); // it was asked for already
        return;
    }
    bus_.connect(
        portalService, portalPath, interface, "Activated", this, SLOT(press(QDBusMessage)));
    bus_.connect(
        portalService, portalPath, interface, "Deactivated", this, SLOT(release(QDBusMessage)));
    bus_.connect(
        portalService, portalPath, interface, "ShortcutsChanged", this, SLOT(change(QDBusMessage)));
    bus_.connect(portalService, session_, sessionInterface, "Closed", this, SLOT(fail()));
    QList<ToldShortcut> wanted;
    for (const GlobalShortcut& shortcut : shortcuts_) {
        wanted.append({QString::fromStdString(shortcut.id),
                       {{"description", QString::fromStdString(shortcut.description)},
                        {"preferred_trigger", QString::fromStdString(shortcut.trigger)}}});
    }
    new PortalRequest(
        bus_,
        {.interface = interface,
         .method = "BindShortcuts",
         .arguments = {QVariant::fromValue(QDBusObjectPath(session_)),
                       QVariant::fromValue(wanted),
                       QString()}},
        [this](uint response, const QVariantMap& results) {
            if (response == PortalRequest::done) {
                tellBound(results.value("shortcuts"));
            } else {
                end(response == PortalRequest::cancelled);
            }
        },
        this);
}

void PortalShortcuts::end(bool isRefused) {
    if (!hasEnded_) {
        close();
        listener_.ended(isRefused);
    }
}

void PortalShortcuts::fail() {
    end(false);
}

void PortalShortcuts::tellBound(const QVariant& shortcuts) {
    if (hasEnded_) {
        return;
    }
    std::map<std::string, std::string> triggers;
    for (const ToldShortcut& shortcut : qdbus_cast<QList<ToldShortcut>>(shortcuts)) {
        triggers[shortcut.id.toStdString()] =
            shortcut.details.value("trigger_description").toString().toStdString();
    }
    listener_.bound(triggers);
}

bool PortalShortcuts::isOurs(const QDBusMessage& signal) const {
    return !hasEnded_ && signal.arguments().value(0).value<QDBusObjectPath>().path() == session_;
}

void PortalShortcuts::press(const QDBusMessage& signal) {
    tellKey(signal, true);
}

void PortalShortcuts::release(const QDBusMessage& signal) {
    tellKey(signal, false);
}

void PortalShortcuts::tellKey(const QDBusMessage& signal, bool isPressed) {
    if (isOurs(signal)) {
        listener_.key(signal.arguments().value(1).toString().toStdString(), isPressed);
    }
}

void PortalShortcuts::change(const QDBusMessage& signal) {
    if (isOurs(signal)) {
        tellBound(signal.arguments().value(1));
    }
}

} // namespace velmora
