// Instructions.h: what the processor at hand offers beyond the least that it must.
#pragma once

namespace velmora {

/// The sound is the same bits with any of them.
enum class Instructions {
    plain,
    avx2, ///< eight floats at a time
};

/// Whether this build has code for them and this processor runs it.
[[nodiscard]] bool areAvailable(Instructions instructions) noexcept;

[[nodiscard]] inline Instructions bestInstructions() noexcept {
    return areAvailable(Instructions::avx2) ? Instructions::avx2 : Instructions::plain;
}

} // namespace velmora
