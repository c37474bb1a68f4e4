#include "platform/pipewire/daemon/RightsRequest.h"

#include <bit>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace velmora::pipewire {
namespace {

using namespace std::chrono_literals;

/// A service that has yet to be started has answered by then.
constexpr auto answersWithin = 30s;

constexpr std::string_view usualSocket = "/var/run/dbus/system_bus_socket";

/// Empty where the system's bus is not reached by a file.
std::string busSocket() {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nobody writes it
    const char* const variable = std::getenv("DBUS_SYSTEM_BUS_ADDRESS");
    if (variable == nullptr) {
        return std::string(usualSocket);
    }
    constexpr std::string_view kind = "unix:path=";
    std::string_view address = variable;
    address = address.substr(0, address.find_first_of(";,"));
    return address.starts_with(kind) ? std::string(address.substr(kind.size())) : "";
}

/// The numbers and texts of a D-Bus message, each at a multiple of its own size.
class Bytes {
public:
    Bytes& align(std::size_t size) {
        bytes_.append((size - bytes_.size() % size) % size, '\0');
        return *this;
    }
    Bytes& byte(char value) {
        bytes_ += value;
        return *this;
    }
    template <typename Number>
    Bytes& number(Number value) {
        align(sizeof value);
        bytes_.append(reinterpret_cast<const char*>(&value), sizeof value);
        return *this;
    }
    Bytes& text(std::string_view value) { return number(length(value)).raw(value).byte(0); }
    Bytes& signature(std::string_view value) {
        return byte(static_cast<char>(value.size())).raw(value).byte(0);
    }
    Bytes& raw(std::string_view value) {
        bytes_ += value;
        return *this;
    }

    [[nodiscard]] const std::string& all() const { return bytes_; }
    static std::uint32_t length(std::string_view value) {
        return static_cast<std::uint32_t>(value.size());
    }

private:
    std::string bytes_;
};

/// What a message's header says, with the protocol's numbers for it.
enum class Field : char { path = 1, interface = 2, member = 3, destination = 6, arguments = 8 };

struct Call {
    std::uint32_t serial;
    std::string_view service; ///< and its interface
    std::string_view path;
    std::string_view method;
    std::string_view arguments; ///< their types
};

std::string message(const Call& call, const std::string& body) {
    Bytes fields;
    const auto begin = [&fields](Field field, std::string_view type) -> Bytes& {
        return fields.align(8).byte(static_cast<char>(field)).signature(type);
    };
    begin(Field::path, "o").text(call.path);
    begin(Field::interface, "s").text(call.service);
    begin(Field::member, "s").text(call.method);
    begin(Field::destination, "s").text(call.service);
    begin(Field::arguments, "g").signature(call.arguments);
    constexpr char order = std::endian::native == std::endian::little ? 'l' : 'B';
    constexpr char methodCall = 1;
    constexpr char noFlags = 0;
    constexpr char firstVersion = 1;
    return Bytes()
        .byte(order)
        .byte(methodCall)
        .byte(noFlags)
        .byte(firstVersion)
        .number(Bytes::length(body))
        .number(call.serial)
        .number(Bytes::length(fields.all()))
        .raw(fields.all())
        .align(8)
        .raw(body)
        .all();
}

/// Who we are, as two digits for each letter of the user's number.
std::string introduction() {
    std::string text(1, '\0');
    text += "AUTH EXTERNAL ";
    for (const char digit : std::to_string(geteuid())) {
        text += {'3', digit}; // the digits' own codes are 0x30 and following
    }
    return text + "\r\nBEGIN\r\n";
}

std::string request(ThreadId thread) {
    constexpr std::string_view bus = "org.freedesktop.DBus";
    const std::string body = Bytes()
                                 .number(static_cast<std::uint64_t>(thread))
                                 .number(static_cast<std::int32_t>(firstNiceLevel))
                                 .all();
    return introduction() +
           message({.serial = 1,
                    .service = bus,
                    .path = "/org/freedesktop/DBus",
                    .method = "Hello",
                    .arguments = ""},
                   "") +
           message({.serial = 2,
                    .service = "org.freedesktop.RealtimeKit1",
                    .path = "/org/freedesktop/RealtimeKit1",
                    .method = "MakeThreadHighPriority",
                    .arguments = "ti"},
                   body);
}

/// Less than zero where nobody listens.
int connectTo(const std::string& path) {
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    if (path.empty() || path.size() >= sizeof address.sun_path) {
        return -1;
    }
    path.copy(address.sun_path, path.size());
    const int handle = ::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    const auto* const where = reinterpret_cast<const sockaddr*>(&address);
    if (handle >= 0 && ::connect(handle, where, sizeof address) != 0) {
        ::close(handle);
        return -1;
    }
    return handle;
}

} // namespace

void RightsRequest::send(ThreadId thread) {
    leave();
    bus_ = connectTo(busSocket());
    if (bus_ < 0) {
        return;
    }
    const std::string all = request(thread);
    if (::send(bus_, all.data(), all.size(), MSG_NOSIGNAL) < 0) {
        leave();
        return;
    }
    leave_.start(answersWithin);
}

void RightsRequest::leave() {
    if (bus_ >= 0) {
        ::close(std::exchange(bus_, -1));
    }
}

} // namespace velmora::pipewire
