#include "platform/desktop/PortalSettings.h"

#include "platform/desktop/PortalRequest.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QLoggingCategory>
#include <QUuid>
#include <utility>

namespace velmora {

namespace {

const QString settings = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString colorSchemeKey = QStringLiteral("color-scheme");

constexpr uint prefersDark = 1; // 0 = no preference, 2 = prefers light
constexpr int answerMilliseconds = 2000;

QDBusConnection connection(const QString& address, const QString& name) {
    return address.isEmpty() ? QDBusConnection::sessionBus()
                             : QDBusConnection::connectToBus(address, name);
}

} // namespace

PortalSettings::PortalSettings(const QString& busAddress, Receiver receiver)
    : bus_(QString{}),
      ownBusName_(busAddress.isEmpty() ? QString{} : QUuid::createUuid().toString()),
      receiver_(std::move(receiver)) {
    // Without this, connecting the signal fails now and then when it is the program's first use of
    // D-Bus: the slot's type is not known yet (Qt 6.4.2).
    qDBusRegisterMetaType<QDBusVariant>();
    bus_ = connection(busAddress, ownBusName_);
    if (!bus_.isConnected()) {
        return;
    }
    const bool follows = bus_.connect(portalService,
                                      portalPath,
                                      settings,
                                      QStringLiteral("SettingChanged"),
                                      this,
                                      SLOT(settingChanged(QString, QString, QDBusVariant)));
    if (!follows) {
        qWarning("The desktop's colour scheme is read once and not followed.");
    }
    auto* watcher = new QDBusServiceWatcher(
        portalService, bus_, QDBusServiceWatcher::WatchForRegistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, &PortalSettings::read);
    read();
}

PortalSettings::~PortalSettings() {
    if (!ownBusName_.isEmpty()) {
        QDBusConnection::disconnectFromBus(ownBusName_);
    }
}

void PortalSettings::read() {
    auto question =
        QDBusMessage::createMethodCall(portalService, portalPath, settings, QStringLiteral("Read"));
    question << appearanceGroup << colorSchemeKey;
    auto* answer = new QDBusPendingCallWatcher(bus_.asyncCall(question, answerMilliseconds), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (reply.isValid()) {
            receive(reply.value().variant());
        }
    });
}

void PortalSettings::settingChanged(const QString& group,
                                       const QString& key,
                                       const QDBusVariant& value) {
    if (group == appearanceGroup && key == colorSchemeKey) {
        receive(value.variant());
    }
}

void PortalSettings::receive(const QVariant& value) {
    // Read wraps the number in two variants, the signal in one.
    QVariant inner = value;
    while (inner.metaType() == QMetaType::fromType<QDBusVariant>()) {
        inner = inner.value<QDBusVariant>().variant();
    }
    receiver_(inner.toUInt() == prefersDark);
}

} // namespace velmora
