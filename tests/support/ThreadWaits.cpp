#include "support/ThreadWaits.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

namespace velmora::support {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr auto lookEvery = 500us;
constexpr int priority = 95; // above everything that plays

const fs::path ownThreads = "/proc/self/task";

} // namespace

std::int32_t threadNamed(std::string_view name) {
    std::int32_t found = 0;
    for (const auto& thread : fs::directory_iterator(ownThreads)) {
        std::string its;
        std::getline(std::ifstream(thread.path() / "comm"), its);
        if (its == name) {
            if (found != 0) {
                return 0;
            }
            found = std::stoi(thread.path().filename());
        }
    }
    return found;
}

ThreadWaits::ThreadWaits(std::int32_t thread)
    : account_(::open((ownThreads / std::to_string(thread) / "schedstat").c_str(),
                      O_RDONLY | O_CLOEXEC)) {
    if (account_ < 0) {
        throw std::runtime_error("no account of thread " + std::to_string(thread));
    }
    watcher_ = std::jthread([this](const std::stop_token& stop) { watch(stop); });
    const sched_param wanted{.sched_priority = priority};
    pthread_setschedparam(watcher_.native_handle(), SCHED_FIFO, &wanted);
}

ThreadWaits::~ThreadWaits() {
    watcher_.request_stop();
    watcher_.join();
    ::close(account_);
}

/// The second of three numbers: nanoseconds so far.
std::int64_t ThreadWaits::waited() const {
    std::array<char, 96> text{};
    const ssize_t size = ::pread(account_, text.data(), text.size(), 0);
    const char* const end = text.data() + std::max<ssize_t>(size, 0);
    const char* const second = std::find(static_cast<const char*>(text.data()), end, ' ');
    std::int64_t number = 0;
    std::from_chars(std::min(second + 1, end), end, number);
    return number;
}

void ThreadWaits::watch(const std::stop_token& stop) {
    std::int64_t before = waited();
    while (!stop.stop_requested()) {
        std::this_thread::sleep_for(lookEvery);
        const std::int64_t now = waited();
        if (now - before > longest_.load()) {
            longest_.store(now - before);
        }
        before = now;
    }
}

} // namespace velmora::support
