#include "platform/pipewire/daemon/SocketWatch.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <string_view>

#include <sys/inotify.h>
#include <unistd.h>

namespace velmora::pipewire {
namespace {

namespace fs = std::filesystem;

/// Empty when the variable is.
std::string variable(const char* name) {
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nobody writes it
    return value == nullptr ? "" : value;
}

/// As libpipewire finds it.
fs::path socketPath() {
    const std::string remote = variable("PIPEWIRE_REMOTE");
    const std::string folder = variable("PIPEWIRE_RUNTIME_DIR");
    return fs::path(folder.empty() ? variable("XDG_RUNTIME_DIR") : folder) /
           (remote.empty() ? PW_DEFAULT_REMOTE : remote);
}

} // namespace

SocketWatch::SocketWatch(const Loop& loop, std::function<void()> came)
    : loop_(loop.get()), came_(std::move(came)), name_(socketPath().filename()) {
    const int descriptor = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (descriptor < 0) {
        return;
    }
    const fs::path folder = socketPath().parent_path();
    if (::inotify_add_watch(descriptor, folder.c_str(), IN_CREATE | IN_MOVED_TO) < 0) {
        ::close(descriptor);
        return;
    }
    constexpr bool closes = true;
    source_ = pw_loop_add_io(
        loop_,
        descriptor,
        SPA_IO_IN,
        closes,
        [](void* self, int ready, std::uint32_t) {
            static_cast<SocketWatch*>(self)->onEvents(ready);
        },
        this);
}

SocketWatch::~SocketWatch() {
    if (source_ != nullptr) {
        pw_loop_destroy_source(loop_, source_);
    }
}

void SocketWatch::onEvents(int descriptor) const {
    alignas(inotify_event) std::array<char, 4096> events{};
    bool hasCome = false;
    for (auto size = ::read(descriptor, events.data(), events.size()); size > 0;
         size = ::read(descriptor, events.data(), events.size())) {
        for (std::size_t at = 0; at < static_cast<std::size_t>(size);) {
            const auto* const event = reinterpret_cast<const inotify_event*>(events.data() + at);
            const std::string_view name = event->len == 0 ? "" : event->name;
            hasCome = hasCome || name.starts_with(name_);
            at += sizeof(inotify_event) + event->len;
        }
    }
    if (hasCome) {
        came_();
    }
}

} // namespace velmora::pipewire
