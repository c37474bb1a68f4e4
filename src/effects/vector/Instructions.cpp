#include "effects/vector/Instructions.h"

namespace velmora {

bool areAvailable(Instructions instructions) noexcept {
#if defined(__x86_64__)
    return instructions == Instructions::plain || __builtin_cpu_supports("avx2");
#else
    return instructions == Instructions::plain;
#endif
}

} // namespace velmora
