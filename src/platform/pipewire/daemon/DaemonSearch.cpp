#include "platform/pipewire/daemon/DaemonSearch.h"

#include <utility>

namespace velmora::pipewire {
namespace {

using namespace std::chrono_literals;

constexpr auto firstAttemptAfter = 200ms;

/// From the moment when a daemon has made its socket.
constexpr auto listensAfter = 20ms;

} // namespace

DaemonSearch::DaemonSearch(const Loop& loop, std::function<void()> attempt)
    : loop_(loop), timer_(loop, std::move(attempt)), pause_(firstAttemptAfter) {
}

void DaemonSearch::goOn() {
    if (!watch_) {
        watch_ = std::make_unique<SocketWatch>(loop_, [this] {
            pause_.restart();
            timer_.start(listensAfter);
        });
    }
    timer_.start(pause_.next());
}

} // namespace velmora::pipewire
