// RealtimeMath.h: keeps tiny numbers from slowing a real-time thread down.
#pragma once

#include <cstdint>

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#endif

namespace velmora::pipewire {

/// Makes this thread's float operations treat denormal numbers as 0. Meant for threads that run
/// nothing but sound: the setting stays.
/// Threads: the node's real-time thread. Real-time: yes.
inline void flushDenormals() noexcept {
#if defined(__x86_64__) || defined(__i386__)
    constexpr unsigned flushToZero = 0x8000U;
    constexpr unsigned denormalsAreZero = 0x0040U;
    _mm_setcsr(_mm_getcsr() | flushToZero | denormalsAreZero);
#elif defined(__aarch64__)
    constexpr std::uint64_t flushToZero = std::uint64_t{1} << 24U;
    std::uint64_t control{};
    asm volatile("mrs %0, fpcr" : "=r"(control));
    asm volatile("msr fpcr, %0" : : "r"(control | flushToZero));
#endif
}

} // namespace velmora::pipewire
