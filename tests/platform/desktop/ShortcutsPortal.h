// ShortcutsPortal.h: a desktop portal with global shortcuts, whose user a test plays.
#pragma once

#include "platform/desktop/BusLeave.h"
#include "platform/desktop/PortalRequest.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QList>
#include <QMap>
#include <QStringList>
#include <QVariant>
#include <gtest/gtest.h>
#include <string>

namespace velmora {

/// One shortcut as it goes over the bus, "(sa{sv})".
struct BusShortcut {
    QString id;
    QVariantMap details;
};
inline QDBusArgument& operator<<(QDBusArgument& argument, const BusShortcut& shortcut) {
    argument.beginStructure();
    argument << shortcut.id << shortcut.details;
    argument.endStructure();
    return argument;
}
inline const QDBusArgument& operator>>(const QDBusArgument& argument, BusShortcut& shortcut) {
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.details;
    argument.endStructure();
    return argument;
}

/// Answers every question at once, as `bindResponse` says.
class ShortcutsPortal : public QDBusVirtualObject {
public:
    explicit ShortcutsPortal(const std::string& address)
        : bus_(QDBusConnection::connectToBus(QString::fromStdString(address), connectionName)) {
        qDBusRegisterMetaType<BusShortcut>();
        qDBusRegisterMetaType<QList<BusShortcut>>();
        EXPECT_TRUE(bus_.registerVirtualObject(
            portalPath, this, QDBusConnection::VirtualObjectRegisterOption::SubPath));
        EXPECT_TRUE(bus_.registerService(portalService));
    }
    ~ShortcutsPortal() override { leaveBus(bus_, *this, portalPath); }
    ShortcutsPortal(const ShortcutsPortal&) = delete;
    ShortcutsPortal& operator=(const ShortcutsPortal&) = delete;

    void press(const QString& id) { tellKey("Activated", session, id); }
    void release(const QString& id) { tellKey("Deactivated", session, id); }
    /// Somebody else's key.
    void pressOthers(const QString& id) { tellKey("Activated", portalPath + "/session/x/y", id); }
    /// The user has given other keys.
    void giveKeys(const QMap<QString, QString>& keys) {
        auto signal = QDBusMessage::createSignal(portalPath, interface, "ShortcutsChanged");
        signal << QVariant::fromValue(QDBusObjectPath(session)) << QVariant::fromValue(bound(keys));
        EXPECT_TRUE(bus_.send(signal));
    }
    void closeSession() {
        EXPECT_TRUE(bus_.send(
            QDBusMessage::createSignal(session, "org.freedesktop.portal.Session", "Closed")));
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        const auto arguments = message.arguments();
        asked.append(message.member());
        if (message.member() == "Get") {
            return hasShortcuts && connection.send(message.createReply(
                                       QVariant::fromValue(QDBusVariant(QVariant(1U)))));
        }
        if (message.member() == "Register") {
            program = arguments.value(0).toString();
            return connection.send(message.createReply());
        }
        if (message.member() == "Close") {
            closed.append(message.path());
            return connection.send(message.createReply());
        }
        if (message.member() == "CreateSession") {
            const auto options = qdbus_cast<QVariantMap>(arguments.value(0));
            session = portalObjectPath(
                "session", message.service(), options.value("session_handle_token").toString());
            return answer(message, connection, options, 0, {{"session_handle", session}});
        }
        if (message.member() == "BindShortcuts") {
            wanted = qdbus_cast<QList<BusShortcut>>(arguments.value(1));
            QMap<QString, QString> keys;
            for (const BusShortcut& shortcut : wanted) {
                keys[shortcut.id] = shortcut.details.value("preferred_trigger").toString();
            }
            const auto options = qdbus_cast<QVariantMap>(arguments.value(3));
            return !answersBinding || answer(message,
                                             connection,
                                             options,
                                             bindResponse,
                                             {{"shortcuts", QVariant::fromValue(bound(keys))}});
        }
        return false;
    }
    [[nodiscard]] QString introspect(const QString&) const override { return {}; }

    // -- as a test arranges it --
    bool hasShortcuts = true;
    bool answersBinding = true;
    uint bindResponse = 0;

    // -- what was asked --
    QStringList asked;
    QString program;
    QString session;
    QStringList closed;
    QList<BusShortcut> wanted;

private:
    static inline const QString connectionName = QStringLiteral("shortcuts-portal");
    static inline const QString interface =
        QStringLiteral("org.freedesktop.portal.GlobalShortcuts");

    static QList<BusShortcut> bound(const QMap<QString, QString>& keys) {
        QList<BusShortcut> list;
        for (auto key = keys.begin(); key != keys.end(); ++key) {
            list.append({key.key(), {{"trigger_description", key.value()}}});
        }
        return list;
    }

    void tellKey(const QString& signalName, const QString& whose, const QString& id) {
        auto signal = QDBusMessage::createSignal(portalPath, interface, signalName);
        signal << QVariant::fromValue(QDBusObjectPath(whose)) << id << qulonglong{0}
               << QVariantMap();
        EXPECT_TRUE(bus_.send(signal));
    }

    static bool answer(const QDBusMessage& message,
                       const QDBusConnection& connection,
                       const QVariantMap& options,
                       uint response,
                       const QVariantMap& results) {
        const QString request = portalObjectPath(
            "request", message.service(), options.value("handle_token").toString());
        auto signal =
            QDBusMessage::createSignal(request, "org.freedesktop.portal.Request", "Response");
        signal << response << results;
        return connection.send(
                   message.createReply(QVariant::fromValue(QDBusObjectPath(request)))) &&
               connection.send(signal);
    }

    QDBusConnection bus_;
};

} // namespace velmora
