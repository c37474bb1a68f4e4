// PriorityMutex.h: the mutex for the few short locks that an audio thread takes.
#pragma once

#include <pthread.h>

namespace velmora {

/// While an audio thread waits, the holder runs at the audio thread's priority, so that no third
/// thread can keep both from their work. Lockable, for `std::scoped_lock`.
///
/// Threads: any. Real-time: yes, when it is held for a few words' copy only.
class PriorityMutex {
public:
    PriorityMutex();
    ~PriorityMutex();
    PriorityMutex(const PriorityMutex&) = delete;
    PriorityMutex& operator=(const PriorityMutex&) = delete;

    void lock() noexcept { pthread_mutex_lock(&mutex_); }
    void unlock() noexcept { pthread_mutex_unlock(&mutex_); }
    // NOLINTNEXTLINE(readability-identifier-naming): the name that std::unique_lock looks for
    [[nodiscard]] bool try_lock() noexcept { return pthread_mutex_trylock(&mutex_) == 0; }

private:
    pthread_mutex_t mutex_;
};

} // namespace velmora
