#include "platform/desktop/ThreadRaiser.h"

#include "platform/desktop/BusLeave.h"
#include "platform/desktop/PrivateBus.h"
#include "platform/qt/QtEventLoop.h"
#include "support/TemporaryFolder.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <array>
#include <cstdlib>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace velmora {
namespace {

constexpr const char* servicePath = "/org/freedesktop/RealtimeKit1";

/// What of a system raises threads. It only notes what it is asked for.
class RaisingService : public QDBusVirtualObject {
public:
    explicit RaisingService(const std::string& address)
        : bus_(QDBusConnection::connectToBus(QString::fromStdString(address), "raising-service")) {
        EXPECT_TRUE(bus_.registerVirtualObject(servicePath, this));
        EXPECT_TRUE(bus_.registerService("org.freedesktop.RealtimeKit1"));
    }
    ~RaisingService() override { leaveBus(bus_, *this, servicePath); }
    RaisingService(const RaisingService&) = delete;
    RaisingService& operator=(const RaisingService&) = delete;

    bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
        asked = message;
        askingProcess = bus_.interface()->servicePid(message.service());
        return bus_.send(message.createReply());
    }
    [[nodiscard]] QString introspect(const QString&) const override { return {}; }

    std::optional<QDBusMessage> asked;
    uint askingProcess = 0;

private:
    QDBusConnection bus_;
};

/// Somebody has opened its socket, and takes no more than a few calls from it: none is answered.
class DeafBus {
public:
    static constexpr int room = 3;

    DeafBus() : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un where{.sun_family = AF_UNIX, .sun_path = {}};
        file().copy(where.sun_path, sizeof where.sun_path - 1);
        EXPECT_EQ(::bind(socket_, reinterpret_cast<const sockaddr*>(&where), sizeof where), 0);
        EXPECT_EQ(::listen(socket_, room), 0);
    }
    ~DeafBus() { ::close(socket_); }
    DeafBus(const DeafBus&) = delete;
    DeafBus& operator=(const DeafBus&) = delete;

    [[nodiscard]] std::string address() const { return "unix:path=" + file(); }

private:
    [[nodiscard]] std::string file() const { return folder_.path() / "bus"; }

    support::TemporaryFolder folder_{"velmora-deaf-bus"};
    int socket_;
};

class ThreadRaiserTest : public testing::Test {
protected:
    // NOLINTBEGIN(concurrency-mt-unsafe): while nobody asks
    ThreadRaiserTest() { reach(bus.address()); }
    ~ThreadRaiserTest() override { unsetenv("DBUS_SYSTEM_BUS_ADDRESS"); }
    static void reach(const std::string& address) {
        setenv("DBUS_SYSTEM_BUS_ADDRESS", address.c_str(), /*overwrite=*/1);
    }
    // NOLINTEND(concurrency-mt-unsafe)

    QtEventLoop events;
    PrivateBus bus;
};

TEST_F(ThreadRaiserTest, AsksForTheThreadInTheNameOfItsProcess) {
    const RaisingService system(bus.address());
    ThreadRaiser raiser;

    raiser.raise(4711, -11);

    ASSERT_TRUE(events.runUntil([&] { return system.askingProcess != 0; }));
    EXPECT_EQ(system.asked->member(), "MakeThreadHighPriority");
    EXPECT_EQ(system.asked->interface(), "org.freedesktop.RealtimeKit1");
    EXPECT_EQ(system.asked->arguments(), QVariantList({qulonglong{4711}, -11}));
    EXPECT_EQ(system.askingProcess, static_cast<uint>(getpid()));
}

/// Ends at once, or never.
TEST_F(ThreadRaiserTest, WaitsForNoBusThatHearsNobody) {
    const DeafBus deaf;
    reach(deaf.address());
    std::array<ThreadRaiser, 2 * DeafBus::room> raisers;
    for (ThreadRaiser& raiser : raisers) {
        raiser.raise(4711, -11);
    }
}

TEST_F(ThreadRaiserTest, IsNothingWithoutABus) {
    for (const char* const address : {"unix:path=/nowhere/bus", "tcp:host=localhost", ""}) {
        reach(address);
        ThreadRaiser().raise(4711, -11);
    }
}

} // namespace
} // namespace velmora
