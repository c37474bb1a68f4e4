// ThreadMode.h: puts a benchmark's thread into the state of an audio thread.
#pragma once

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace velmora {

inline void flushDenormals() {
#if defined(__SSE2__)
    _MM_SET_FLUSH_ZERO_MODE(_MM_FLUSH_ZERO_ON);
    _mm_setcsr(_mm_getcsr() | 0x0040U); // also denormal inputs
#endif
}

} // namespace velmora
