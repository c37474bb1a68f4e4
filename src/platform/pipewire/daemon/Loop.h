// Loop.h: a PipeWire thread loop, its lock, and work to be done on it.
#pragma once

#include <pipewire/pipewire.h>

#include <chrono>
#include <functional>
#include <memory>

namespace velmora::pipewire {

/// A thread that runs one PipeWire loop. Every PipeWire call on objects of this loop needs its
/// `Lock`; callbacks run with it held.
class Loop {
public:
    /// Makes the loop; nothing runs before `start`. Throws std::bad_alloc.
    explicit Loop(const char* name);
    /// Ends the thread. The loop must not be locked by the caller.
    ~Loop() { stop(); }
    Loop(const Loop&) = delete;
    Loop& operator=(const Loop&) = delete;

    /// Returns false when the system has no thread to give.
    bool start() { return pw_thread_loop_start(loop_.get()) >= 0; }

    /// Ends the thread; from then on nobody else touches the loop's objects.
    void stop() noexcept { pw_thread_loop_stop(loop_.get()); }

    [[nodiscard]] pw_loop* get() const { return pw_thread_loop_get_loop(loop_.get()); }

    /// Held by the thread itself while it runs callbacks; may be taken more than once.
    class Lock {
    public:
        explicit Lock(const Loop& loop) : loop_(loop.loop_.get()) { pw_thread_loop_lock(loop_); }
        ~Lock() { pw_thread_loop_unlock(loop_); }
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;

        /// Waits until `condition` holds, looking again after each `Loop::notify`.
        /// Returns whether it holds.
        bool wait(std::chrono::milliseconds limit, const std::function<bool()>& condition);

    private:
        pw_thread_loop* loop_;
    };

    /// Wakes those who wait. Threads: any, with the lock.
    void notify() const { pw_thread_loop_signal(loop_.get(), false); }

private:
    struct Destroy {
        void operator()(pw_thread_loop* loop) const noexcept { pw_thread_loop_destroy(loop); }
    };
    std::unique_ptr<pw_thread_loop, Destroy> loop_;
};

/// Work that the loop runs as soon as it is free, once however often it was asked for.
/// Threads: any, with the loop's lock, or while the loop does not run.
class LoopWork {
public:
    LoopWork(const Loop& loop, std::function<void()> work);
    ~LoopWork();
    LoopWork(const LoopWork&) = delete;
    LoopWork& operator=(const LoopWork&) = delete;

    /// Threads: any.
    void request();

private:
    pw_loop* loop_;
    std::function<void()> work_;
    spa_source* source_;
};

/// Work that the loop runs after a delay, unless asked again before.
/// Threads: any, with the loop's lock, or while the loop does not run.
class LoopTimer {
public:
    LoopTimer(const Loop& loop, std::function<void()> work);
    ~LoopTimer();
    LoopTimer(const LoopTimer&) = delete;
    LoopTimer& operator=(const LoopTimer&) = delete;

    void start(std::chrono::milliseconds delay);

private:
    pw_loop* loop_;
    std::function<void()> work_;
    spa_source* source_;
};

} // namespace velmora::pipewire
