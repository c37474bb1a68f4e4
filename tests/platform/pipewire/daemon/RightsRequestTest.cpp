#include "platform/pipewire/daemon/RightsRequest.h"

#include "platform/desktop/BusLeave.h"
#include "platform/desktop/PrivateBus.h"
#include "platform/pipewire/PipeWireAudio.h"
#include "platform/pipewire/daemon/WithoutPriorities.h"
#include "platform/qt/QtEventLoop.h"
#include "platform/qt/QtMainQueue.h"
#include "support/ThreadWaits.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <cstdlib>
#include <gtest/gtest.h>
#include <list>
#include <optional>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace velmora::pipewire {
namespace {

constexpr const char* servicePath = "/org/freedesktop/RealtimeKit1";

/// What of a system raises threads. It only notes what it is asked for.
class ThreadRaiser : public QDBusVirtualObject {
public:
    explicit ThreadRaiser(const std::string& address)
        : bus_(QDBusConnection::connectToBus(QString::fromStdString(address), "thread-raiser")) {
        EXPECT_TRUE(bus_.registerVirtualObject(servicePath, this));
        EXPECT_TRUE(bus_.registerService("org.freedesktop.RealtimeKit1"));
    }
    ~ThreadRaiser() override { leaveBus(bus_, *this, servicePath); }
    ThreadRaiser(const ThreadRaiser&) = delete;
    ThreadRaiser& operator=(const ThreadRaiser&) = delete;

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

class RightsRequestTest : public testing::Test {
protected:
    // NOLINTBEGIN(concurrency-mt-unsafe): before and after the loop's thread
    RightsRequestTest() {
        pw_init(nullptr, nullptr);
        setenv("PIPEWIRE_RUNTIME_DIR", "/nowhere", /*overwrite=*/1);
        reach(bus.address());
        loop.emplace("velmora-test");
        loop->start();
    }
    ~RightsRequestTest() override {
        loop->stop();
        requests.clear();
        loop.reset();
        unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
        unsetenv("PIPEWIRE_RUNTIME_DIR");
        pw_deinit();
    }
    static void reach(const std::string& address) {
        setenv("DBUS_SYSTEM_BUS_ADDRESS", address.c_str(), /*overwrite=*/1);
    }
    // NOLINTEND(concurrency-mt-unsafe)

    void ask() {
        const Loop::Lock lock(*loop);
        requests.emplace_back(*loop).send(4711);
    }

    QtEventLoop events;
    PrivateBus bus;
    std::optional<Loop> loop;
    std::list<RightsRequest> requests;
};

TEST_F(RightsRequestTest, AsksForTheThreadInTheNameOfItsProcess) {
    const ThreadRaiser system(bus.address());

    ask();

    ASSERT_TRUE(events.runUntil([&] { return system.askingProcess != 0; }));
    EXPECT_EQ(system.asked->member(), "MakeThreadHighPriority");
    EXPECT_EQ(system.asked->interface(), "org.freedesktop.RealtimeKit1");
    EXPECT_EQ(system.asked->arguments(), QVariantList({qulonglong{4711}, firstNiceLevel}));
    EXPECT_EQ(system.askingProcess, static_cast<uint>(getpid()));
}

/// Ends at once, or never.
TEST_F(RightsRequestTest, WaitsForNoBusThatHearsNobody) {
    const DeafBus deaf;
    reach(deaf.address());
    for (int request = 0; request < 2 * DeafBus::room; ++request) {
        ask();
    }
}

TEST_F(RightsRequestTest, IsNothingWithoutABus) {
    for (const char* const address : {"unix:path=/nowhere/bus", "tcp:host=localhost", ""}) {
        reach(address);
        ask();
    }
}

TEST_F(RightsRequestTest, IsMadeForTheControlThreadWhereTheKernelRefuses) {
    const ThreadRaiser system(bus.address());
    const WithoutPriorities none;
    QtMainQueue queue;

    const PipeWireAudio audio(queue);

    ASSERT_TRUE(events.runUntil([&] { return system.askingProcess != 0; }));
    const auto thread = static_cast<qulonglong>(support::threadNamed("velmora-control"));
    EXPECT_EQ(system.asked->arguments(), QVariantList({thread, firstNiceLevel}));
}

} // namespace
} // namespace velmora::pipewire
