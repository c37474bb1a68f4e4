// FakePortal.h: a desktop portal that says what a test wants.
#pragma once

#include "platform/desktop/BusLeave.h"
#include "platform/desktop/PortalRequest.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QMap>
#include <QVariant>
#include <gtest/gtest.h>
#include <string>

namespace velmora {

inline constexpr uint noPreference = 0;
inline constexpr uint prefersDark = 1;
inline constexpr uint prefersLight = 2;

inline const QString everyDesktop = QStringLiteral("org.freedesktop.appearance");
inline const QString gnomeInterface = QStringLiteral("org.gnome.desktop.interface");
inline const QString gnomeAccess = QStringLiteral("org.gnome.desktop.a11y.interface");
inline const QString colorScheme = QStringLiteral("color-scheme");
inline const QString textScale = QStringLiteral("text-scaling-factor");

/// The settings of a desktop portal; it has those that a test has set.
class FakePortal : public QDBusVirtualObject {
public:
    FakePortal(const std::string& address, uint scheme)
        : values_{{everyDesktop + colorScheme, scheme}},
          bus_(QDBusConnection::connectToBus(QString::fromStdString(address), "fake-portal")) {
        EXPECT_TRUE(bus_.registerVirtualObject(portalPath, this));
        EXPECT_TRUE(bus_.registerService(portalService));
    }
    ~FakePortal() override { leaveBus(bus_, *this, portalPath); }
    FakePortal(const FakePortal&) = delete;
    FakePortal& operator=(const FakePortal&) = delete;

    void change(const QString& key, const QVariant& value, const QString& group = everyDesktop) {
        values_[group + key] = value;
        auto signal = QDBusMessage::createSignal(
            portalPath, "org.freedesktop.portal.Settings", "SettingChanged");
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        EXPECT_TRUE(bus_.send(signal));
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        const auto question = message.arguments();
        const auto value =
            values_.constFind(question.value(0).toString() + question.value(1).toString());
        if (message.member() != "Read" || value == values_.constEnd()) {
            return false;
        }
        // As portals answer: the value in a variant, in a variant.
        const QDBusVariant number{*value};
        const QDBusVariant wrapped{QVariant::fromValue(number)};
        return connection.send(message.createReply(QVariant::fromValue(wrapped)));
    }
    [[nodiscard]] QString introspect(const QString&) const override { return {}; }

private:
    QMap<QString, QVariant> values_;
    QDBusConnection bus_;
};

} // namespace velmora
