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

const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");

constexpr int settingMilliseconds = 2000;

QDBusConnection connection(const QString& address, const QString& name) {
    return address.isEmpty() ? QDBusConnection::sessionBus()
                             : QDBusConnection::connectToBus(address, name);
}

/// Read wraps a value in two variants, the signal in one.
QVariant unwrapped(QVariant value) {
    while (value.metaType() == QMetaType::fromType<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

} // namespace

PortalSettings::PortalSettings(const QString& busAddress, std::vector<Setting> settings)
    : bus_(QString{}),
      ownBusName_(busAddress.isEmpty() ? QString{} : QUuid::createUuid().toString()),
      settings_(std::move(settings)) {
    // Without this, connecting the signal fails now and then when it is the program's first use of
    // D-Bus: the slot's type is not known yet (Qt 6.4.2).
    qDBusRegisterMetaType<QDBusVariant>();
    bus_ = connection(busAddress, ownBusName_);
    if (!bus_.isConnected()) {
        return;
    }
    const bool follows = bus_.connect(portalService,
                                      portalPath,
                                      settingsInterface,
                                      QStringLiteral("SettingChanged"),
                                      this,
                                      SLOT(settingChanged(QString, QString, QDBusVariant)));
    if (!follows) {
        qWarning("The desktop's settings are read once and not followed.");
    }
    auto* watcher = new QDBusServiceWatcher(
        portalService, bus_, QDBusServiceWatcher::WatchForRegistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, &PortalSettings::readAll);
    readAll();
}

PortalSettings::~PortalSettings() {
    if (!ownBusName_.isEmpty()) {
        QDBusConnection::disconnectFromBus(ownBusName_);
    }
}

void PortalSettings::readAll() {
    for (const Setting& setting : settings_) {
        read(setting);
    }
}

void PortalSettings::read(const Setting& setting) {
    auto question = QDBusMessage::createMethodCall(
        portalService, portalPath, settingsInterface, QStringLiteral("Read"));
    question << setting.group << setting.key;
    auto* answer = new QDBusPendingCallWatcher(bus_.asyncCall(question, settingMilliseconds), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [answer, &setting] {
        answer->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (reply.isValid()) { // not every desktop has every setting
            setting.receive(unwrapped(reply.value().variant()));
        }
    });
}

void PortalSettings::settingChanged(const QString& group,
                                    const QString& key,
                                    const QDBusVariant& value) {
    for (const Setting& setting : settings_) {
        if (setting.group == group && setting.key == key) {
            setting.receive(unwrapped(value.variant()));
        }
    }
}

} // namespace velmora
