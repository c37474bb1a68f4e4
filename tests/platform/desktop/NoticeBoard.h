// NoticeBoard.h: shows the messages of programs to a test.
#pragma once

#include "platform/desktop/BusLeave.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QList>
#include <QStringList>
#include <QVariantMap>
#include <gtest/gtest.h>
#include <string>

namespace velmora {

/// What of a desktop shows messages. It answers by itself, or when a test lets it.
class NoticeBoard : public QDBusVirtualObject {
public:
    explicit NoticeBoard(const std::string& address)
        : bus_(QDBusConnection::connectToBus(QString::fromStdString(address), "notice-board")) {
        EXPECT_TRUE(bus_.registerVirtualObject("/org/freedesktop/Notifications", this));
        EXPECT_TRUE(bus_.registerService("org.freedesktop.Notifications"));
    }
    ~NoticeBoard() override { leaveBus(bus_, *this, "/org/freedesktop/Notifications"); }
    NoticeBoard(const NoticeBoard&) = delete;
    NoticeBoard& operator=(const NoticeBoard&) = delete;

    bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
        if (message.signature() != "susssasa{sv}i") {
            return false;
        }
        replaced.append(message.arguments().value(1).toUInt());
        shown.append(message.arguments().value(3).toString());
        hints = qdbus_cast<QVariantMap>(message.arguments().value(6));
        question_ = message;
        if (answersItself) {
            answer(1);
        }
        return true;
    }
    [[nodiscard]] QString introspect(const QString&) const override { return {}; }

    void answer(uint number) { EXPECT_TRUE(bus_.send(question_.createReply(number))); }

    bool answersItself = true;
    QStringList shown;
    QList<uint> replaced;
    QVariantMap hints;

private:
    QDBusMessage question_;
    QDBusConnection bus_;
};

} // namespace velmora
