#include "RealTimeGuard.h"

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <dlfcn.h>
#include <pthread.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <ucontext.h>
#include <unistd.h>

#ifndef PR_SET_SYSCALL_USER_DISPATCH
#define PR_SET_SYSCALL_USER_DISPATCH 59
#define PR_SYS_DISPATCH_OFF 0
#define PR_SYS_DISPATCH_ON 1
#endif

namespace velmora {
namespace {

constexpr char letPass = 0; // SYSCALL_DISPATCH_FILTER_ALLOW
constexpr char report = 1;  // SYSCALL_DISPATCH_FILTER_BLOCK

struct Counters {
    std::atomic<std::int64_t> callbacks;
    std::atomic<std::int64_t> allocations;
    std::atomic<std::int64_t> releases;
    std::atomic<std::int64_t> systemCalls;
    std::atomic<std::int64_t> firstSystemCall;
    std::atomic<std::int64_t> contendedLocks;
    std::atomic<std::int64_t> plainLocks;
};

constinit Counters counters{};
constinit std::atomic<bool> watching = false;

// Plain zero-initialised values: reading them must not allocate, as the allocator itself does.
constinit thread_local bool isRealTimeThread = false;
constinit thread_local bool isInCallback = false;
constinit thread_local bool dispatchIsOn = false;
constinit thread_local volatile char selector = letPass; // read by the kernel at each system call

void count(std::atomic<std::int64_t>& counter) {
    counter.fetch_add(1, std::memory_order_relaxed);
}

bool isWatched() {
    return isRealTimeThread && watching.load(std::memory_order_relaxed);
}

#if defined(__x86_64__)
/// Makes the system call that was held up, and returns its result to whoever made it.
void repeatCall(ucontext_t& context) {
    auto& registers = context.uc_mcontext.gregs;
    register long r10 __asm__("r10") = registers[REG_R10];
    register long r8 __asm__("r8") = registers[REG_R8];
    register long r9 __asm__("r9") = registers[REG_R9];
    long result = registers[REG_RAX];
    __asm__ volatile("syscall"
                     : "+a"(result)
                     : "D"(registers[REG_RDI]),
                       "S"(registers[REG_RSI]),
                       "d"(registers[REG_RDX]),
                       "r"(r10),
                       "r"(r8),
                       "r"(r9)
                     : "rcx", "r11", "memory");
    registers[REG_RAX] = result;
}

/// Only the first call of a callback is seen: the return from here is a system call as well.
void onHeldCall(int /*signal*/, siginfo_t* info, void* context) {
    selector = letPass;
    count(counters.systemCalls);
    std::int64_t none = -1;
    counters.firstSystemCall.compare_exchange_strong(none, info->si_syscall);
    repeatCall(*static_cast<ucontext_t*>(context));
}

bool canHoldCalls() {
    struct sigaction action {};
    action.sa_sigaction = onHeldCall;
    action.sa_flags = SA_SIGINFO;
    sigaction(SIGSYS, &action, nullptr);
    const bool known =
        prctl(PR_SET_SYSCALL_USER_DISPATCH, PR_SYS_DISPATCH_ON, 0, 0, &selector) == 0;
    prctl(PR_SET_SYSCALL_USER_DISPATCH, PR_SYS_DISPATCH_OFF, 0, 0, 0);
    return known;
}

void holdCallsOfThisThread() {
    sigset_t held;
    sigemptyset(&held);
    sigaddset(&held, SIGSYS);
    pthread_sigmask(SIG_UNBLOCK, &held, nullptr);
    dispatchIsOn = prctl(PR_SET_SYSCALL_USER_DISPATCH, PR_SYS_DISPATCH_ON, 0, 0, &selector) == 0;
}
#else
bool canHoldCalls() {
    return false;
}
void holdCallsOfThisThread() {
}
#endif

/// Whether the holder runs at the priority of whoever waits. The C library keeps a mutex's protocol
/// in its kind and has no function that reads it from a mutex.
bool inheritsPriority(const pthread_mutex_t& mutex) {
    constexpr int inheritBit = 32; // PTHREAD_MUTEX_PRIO_INHERIT_NP of glibc's pthreadP.h
    return (mutex.__data.__kind & inheritBit) != 0;
}

/// What the C library itself would have called.
template <typename Function>
Function original(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

} // namespace

bool beginWatching() {
    const bool complete = canHoldCalls();
    counters.callbacks = 0;
    counters.allocations = 0;
    counters.releases = 0;
    counters.systemCalls = 0;
    counters.firstSystemCall = -1;
    counters.contendedLocks = 0;
    counters.plainLocks = 0;
    watching = true;
    return complete;
}

RealTimeSightings endWatching() {
    watching = false;
    return sightingsSoFar();
}

RealTimeSightings sightingsSoFar() {
    return {.callbacks = counters.callbacks,
            .allocations = counters.allocations,
            .releases = counters.releases,
            .systemCalls = counters.systemCalls,
            .firstSystemCall = counters.firstSystemCall,
            .contendedLocks = counters.contendedLocks,
            .plainLocks = counters.plainLocks};
}

RealTimeGuard::RealTimeGuard() {
    isRealTimeThread = true;
    if (!watching.load(std::memory_order_relaxed)) {
        return;
    }
    count(counters.callbacks);
    if (!dispatchIsOn) {
        holdCallsOfThisThread();
    }
    isInCallback = true;
    selector = report;
}

RealTimeGuard::~RealTimeGuard() {
    selector = letPass;
    isInCallback = false;
}

} // namespace velmora

// -- the program's own versions of what real-time code must not call --

extern "C" {

// The C library's own names for its allocator.
// NOLINTBEGIN(bugprone-reserved-identifier)
void* __libc_malloc(std::size_t size);
void __libc_free(void* memory);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
// NOLINTEND(bugprone-reserved-identifier)

void* malloc(std::size_t size) {
    if (velmora::isWatched()) {
        velmora::count(velmora::counters.allocations);
    }
    return __libc_malloc(size);
}

void free(void* memory) {
    if (memory != nullptr && velmora::isWatched()) {
        velmora::count(velmora::counters.releases);
    }
    __libc_free(memory);
}

void* calloc(std::size_t count, std::size_t size) {
    if (velmora::isWatched()) {
        velmora::count(velmora::counters.allocations);
    }
    return __libc_calloc(count, size);
}

void* realloc(void* memory, std::size_t size) {
    if (velmora::isWatched()) {
        velmora::count(velmora::counters.allocations);
    }
    return __libc_realloc(memory, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
    if (velmora::isWatched()) {
        velmora::count(velmora::counters.allocations);
    }
    return __libc_memalign(alignment, size);
}

int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
    *memory = aligned_alloc(alignment, size);
    return *memory == nullptr ? ENOMEM : 0;
}

int pthread_mutex_lock(pthread_mutex_t* mutex) {
    static const auto lock = velmora::original<int (*)(pthread_mutex_t*)>("pthread_mutex_lock");
    if (!velmora::isInCallback) {
        return lock(mutex);
    }
    if (!velmora::inheritsPriority(*mutex)) {
        velmora::count(velmora::counters.plainLocks);
    }
    if (pthread_mutex_trylock(mutex) == 0) {
        return 0;
    }
    velmora::count(velmora::counters.contendedLocks);
    velmora::selector = velmora::letPass; // the wait is the lock's, already counted
    const int result = lock(mutex);
    velmora::selector = velmora::report;
    return result;
}

} // extern "C"
