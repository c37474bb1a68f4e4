#include "platform/desktop/DesktopNotices.h"

#include "platform/desktop/PrivateBus.h"
#include "platform/qt/QtEventLoop.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QList>
#include <QStringList>
#include <QVariantMap>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

namespace velmora {
namespace {

using testing::ElementsAre;

/// A desktop that shows messages, and answers when a test lets it.
class Shower : public QDBusVirtualObject {
public:
    explicit Shower(const std::string& address)
        : bus_(QDBusConnection::connectToBus(QString::fromStdString(address), "shower")) {
        EXPECT_TRUE(bus_.registerVirtualObject("/org/freedesktop/Notifications", this));
        EXPECT_TRUE(bus_.registerService("org.freedesktop.Notifications"));
    }
    ~Shower() override { QDBusConnection::disconnectFromBus("shower"); }
    Shower(const Shower&) = delete;
    Shower& operator=(const Shower&) = delete;

    bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
        if (message.signature() != "susssasa{sv}i") {
            return false;
        }
        replaced.append(message.arguments().value(1).toUInt());
        shown.append(message.arguments().value(3).toString());
        hints = qdbus_cast<QVariantMap>(message.arguments().value(6));
        question_ = message;
        return true;
    }
    [[nodiscard]] QString introspect(const QString&) const override { return {}; }

    void answer(uint number) { EXPECT_TRUE(bus_.send(question_.createReply(number))); }

    QStringList shown;
    QList<uint> replaced;
    QVariantMap hints;

private:
    QDBusMessage question_;
    QDBusConnection bus_;
};

class DesktopNoticesTest : public testing::Test {
protected:
    [[nodiscard]] bool shows(qsizetype count) {
        return loop.runUntil([&] { return desktop.shown.size() >= count; });
    }

    QtEventLoop loop;
    PrivateBus bus;
    Shower desktop{bus.address()};
    DesktopNotices notices{bus.address()};
};

TEST_F(DesktopNoticesTest, AreShownForAMomentAndLeaveNothingBehind) {
    notices.show("Effets contournés");

    ASSERT_TRUE(shows(1));
    EXPECT_EQ(desktop.shown.first(), "Effets contournés");
    EXPECT_EQ(desktop.hints.value("transient"), true);
}

TEST_F(DesktopNoticesTest, EachTakesThePlaceOfTheOneBeforeAndOnlyTheLatestWaits) {
    notices.show("one");
    ASSERT_TRUE(shows(1));
    notices.show("two");
    notices.show("three");
    desktop.answer(7);

    ASSERT_TRUE(shows(2));
    EXPECT_THAT(desktop.shown, ElementsAre(QString("one"), QString("three")));
    EXPECT_THAT(desktop.replaced, ElementsAre(0U, 7U));
}

TEST(DesktopNotices, CostNothingWithoutABus) {
    const QtEventLoop loop;
    DesktopNotices notices("unix:path=/nowhere/bus");

    notices.show("unseen");
}

} // namespace
} // namespace velmora
