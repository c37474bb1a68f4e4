#include "platform/desktop/ThreadRaiser.h"

#include "platform/desktop/Gio.h"

#include <thread>

namespace velmora {
namespace {

constexpr int answerMilliseconds = 30000; // the service may have to be started first

using Bus = std::unique_ptr<GDBusConnection, Unreference>;

/// A connection of its own: the process's shared one would keep a thread for good.
Bus systemBus(GCancellable* giveUp) {
    const OwnedText address(g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, giveUp, nullptr));
    constexpr auto flags =
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    return address ? Bus(g_dbus_connection_new_for_address_sync(
                         address.get(), flags, nullptr, giveUp, nullptr))
                   : nullptr;
}

void ask(std::int32_t thread, std::int32_t niceLevel, GCancellable* giveUp) {
    const Bus bus = systemBus(giveUp);
    if (!bus) {
        return;
    }
    constexpr const char* name = "org.freedesktop.RealtimeKit1";
    GVariant* const answer =
        g_dbus_connection_call_sync(bus.get(),
                                    name,
                                    "/org/freedesktop/RealtimeKit1",
                                    name,
                                    "MakeThreadHighPriority",
                                    g_variant_new("(ti)", static_cast<guint64>(thread), niceLevel),
                                    nullptr,
                                    G_DBUS_CALL_FLAGS_NONE,
                                    answerMilliseconds,
                                    giveUp,
                                    nullptr);
    if (answer != nullptr) {
        g_variant_unref(answer);
    }
}

} // namespace

class ThreadRaiser::Request {
public:
    Request(std::int32_t thread, std::int32_t niceLevel)
        : giveUp_(g_cancellable_new()), asking_(ask, thread, niceLevel, giveUp_.get()) {}
    ~Request() {
        g_cancellable_cancel(giveUp_.get());
        asking_.join();
    }
    Request(const Request&) = delete;
    Request& operator=(const Request&) = delete;

private:
    std::unique_ptr<GCancellable, Unreference> giveUp_;
    std::thread asking_;
};

ThreadRaiser::ThreadRaiser() = default;
ThreadRaiser::~ThreadRaiser() = default;

void ThreadRaiser::raise(std::int32_t thread, std::int32_t niceLevel) {
    request_.reset();
    request_ = std::make_unique<Request>(thread, niceLevel);
}

} // namespace velmora
