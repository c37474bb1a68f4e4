#include "app/QuitSignals.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>

#include <sys/eventfd.h>
#include <unistd.h>

namespace velmora {
namespace {

constexpr std::array handledSignals{SIGINT, SIGTERM, SIGHUP};

std::atomic<int> wakeUp{-1}; // read inside the signal handler
static_assert(std::atomic<int>::is_always_lock_free);

void handle(int /*signal*/) {
    const int before = errno;
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(wakeUp.load(), &one, sizeof one);
    errno = before;
}

void handleAll(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int signal : handledSignals) {
        sigaction(signal, &action, nullptr);
    }
}

} // namespace

QuitSignals::QuitSignals(std::function<void()> quit) : quit_(std::move(quit)) {
    wakeUp = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    notifier_ = std::make_unique<QSocketNotifier>(wakeUp.load(), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] {
        std::uint64_t count = 0;
        [[maybe_unused]] const ssize_t taken = read(wakeUp.load(), &count, sizeof count);
        quit_();
    });
    handleAll(handle);
}

QuitSignals::~QuitSignals() {
    handleAll(SIG_DFL);
    notifier_.reset();
    close(wakeUp.exchange(-1));
}

} // namespace velmora
