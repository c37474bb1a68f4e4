#include "platform/desktop/DesktopAppearance.h"

#include "platform/desktop/PrivateBus.h"
#include "platform/qt/QtEventLoop.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QVariant>
#include <gtest/gtest.h>

namespace velmora {
namespace {

constexpr uint noPreference = 0;
constexpr uint prefersDark = 1;
constexpr uint prefersLight = 2;

const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString colorScheme = QStringLiteral("color-scheme");

/// The settings of a desktop portal, as far as colours go.
class FakePortal : public QDBusVirtualObject {
public:
    FakePortal(const std::string& address, uint scheme)
        : scheme_(scheme),
          bus_(QDBusConnection::connectToBus(QString::fromStdString(address), "fake-portal")) {
        EXPECT_TRUE(bus_.registerVirtualObject(portalPath, this));
        EXPECT_TRUE(bus_.registerService(portalService));
    }
    ~FakePortal() override { QDBusConnection::disconnectFromBus("fake-portal"); }
    FakePortal(const FakePortal&) = delete;
    FakePortal& operator=(const FakePortal&) = delete;

    void change(uint value, const QString& key = colorScheme) {
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

class DesktopAppearanceTest : public testing::Test {
protected:
    QtEventLoop loop;
    PrivateBus bus;
};

TEST_F(DesktopAppearanceTest, IsLightUntilThePortalHasAnswered) {
    const FakePortal portal(bus.address(), prefersDark);
    const DesktopAppearance appearance(bus.address());

    EXPECT_FALSE(appearance.isDark());

    EXPECT_TRUE(loop.runUntil([&] { return appearance.isDark(); }));
}

TEST_F(DesktopAppearanceTest, FollowsEveryChangeAndTellsIt) {
    FakePortal portal(bus.address(), prefersDark);
    DesktopAppearance appearance(bus.address());
    std::vector<bool> told;
    appearance.onChange([&] { told.push_back(appearance.isDark()); });
    ASSERT_TRUE(loop.runUntil([&] { return appearance.isDark(); }));

    portal.change(prefersLight);
    ASSERT_TRUE(loop.runUntil([&] { return !appearance.isDark(); }));
    portal.change(prefersDark);
    ASSERT_TRUE(loop.runUntil([&] { return appearance.isDark(); }));
    portal.change(noPreference);
    ASSERT_TRUE(loop.runUntil([&] { return !appearance.isDark(); }));

    EXPECT_EQ(told, (std::vector{true, false, true, false}));
}

TEST_F(DesktopAppearanceTest, IgnoresOtherSettingsAndRepetitions) {
    FakePortal portal(bus.address(), prefersDark);
    DesktopAppearance appearance(bus.address());
    ASSERT_TRUE(loop.runUntil([&] { return appearance.isDark(); }));
    int told = 0;
    appearance.onChange([&] { ++told; });

    portal.change(prefersLight, "contrast");
    portal.change(prefersDark);
    portal.change(prefersLight); // messages keep their order: with this one, the others have come

    ASSERT_TRUE(loop.runUntil([&] { return !appearance.isDark(); }));
    EXPECT_EQ(told, 1);
}

TEST_F(DesktopAppearanceTest, AsksAPortalThatAppearsLater) {
    const DesktopAppearance appearance(bus.address());
    const FakePortal portal(bus.address(), prefersDark);

    EXPECT_TRUE(loop.runUntil([&] { return appearance.isDark(); }));
}

TEST(DesktopAppearance, IsLightWithoutABus) {
    QtEventLoop loop;
    const DesktopAppearance appearance("unix:path=/nowhere/bus");

    EXPECT_FALSE(appearance.isDark());
}

} // namespace
} // namespace velmora
