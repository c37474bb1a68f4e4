// ThreadRaiser.h: asks RealtimeKit to let a thread go before those of other programs.
#pragma once

#include <cstdint>
#include <memory>

namespace velmora {

/// Who may not raise a thread by himself may ask this service of the system's D-Bus. It can take
/// seconds to start, and a bus need not answer at all: a thread of its own asks and waits.
///
/// Threads: main. Errors: none; without bus or service the thread stays as it is.
class ThreadRaiser {
public:
    ThreadRaiser();
    /// Gives up what has not been answered.
    ~ThreadRaiser();
    ThreadRaiser(const ThreadRaiser&) = delete;
    ThreadRaiser& operator=(const ThreadRaiser&) = delete;

    /// Never blocks. The latest request counts.
    /// @param thread  the kernel's number of a thread of this process
    /// @param niceLevel  the lower, the sooner
    void raise(std::int32_t thread, std::int32_t niceLevel);

private:
    class Request;
    std::unique_ptr<Request> request_;
};

} // namespace velmora
