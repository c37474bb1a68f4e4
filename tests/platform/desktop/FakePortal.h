// FakePortal.h: a desktop portal that says what a test wants.
#pragma once

#include "platform/desktop/BusLeave.h"
#include "platform/desktop/PortalRequest.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QVariant>
#include <gtest/gtest.h>
#include <string>

namespace velmora {

inline constexpr uint noPreference = 0;
inline constexpr uint prefersDark = 1;
inline constexpr uint prefersLight = 2;

inline const QString colorScheme = QStringLiteral("color-scheme");

/// The settings of a desktop portal, as far as colours go.
class FakePortal : public QDBusVirtualObject {
public:
    FakePortal(const std::string& address, uint scheme)
        : scheme_(scheme),
          bus_(QDBusConnection::connectToBus(QString::fromStdString(address), "fake-portal")) {
        EXPECT_TRUE(bus_.registerVirtualObject(portalPath, this));
        EXPECT_TRUE(bus_.registerService(portalService));
    }
    ~FakePortal() override { leaveBus(bus_, *this, portalPath); }
    FakePortal(const FakePortal&) = delete;
    FakePortal& operator=(const FakePortal&) = delete;

    void change(uint value, const QString& key = colorScheme) {
        if (key == colorScheme) {
            scheme_ = value;
        }
        auto signal = QDBusMessage::createSignal(
            portalPath, "org.freedesktop.portal.Settings", "SettingChanged");
        signal << "org.freedesktop.appearance" << key << QVariant::fromValue(QDBusVariant(value));
        EXPECT_TRUE(bus_.send(signal));
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        const auto question = message.arguments();
        if (message.member() != "Read" || question.value(0) != "org.freedesktop.appearance" ||
            question.value(1) != colorScheme) {
            return false;
        }
        // As portals answer: the number in a variant, in a variant.
        const QDBusVariant number{QVariant(scheme_)};
        const QDBusVariant wrapped{QVariant::fromValue(number)};
        return connection.send(message.createReply(QVariant::fromValue(wrapped)));
    }
    [[nodiscard]] QString introspect(const QString&) const override { return {}; }

private:
    uint scheme_;
    QDBusConnection bus_;
};

} // namespace velmora
