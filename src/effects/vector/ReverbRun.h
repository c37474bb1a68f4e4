// ReverbRun.h: takes rows of samples along a room's lines where none of them starts over.
#pragma once

#include "effects/vector/Instructions.h"

#include <array>
#include <cstddef>

namespace velmora {

/// One channel's lines at their positions.
struct ReverbRun {
    static constexpr std::size_t combs = 4;
    static constexpr std::size_t allpasses = 2;

    std::array<float*, combs + allpasses> lines; // the combs first
    float* signal;                               // in, and the wet signal out
    float* stores;                               // each comb's damping low-pass
};

struct ReverbTone {
    float feedback;
    float damp;
};

inline constexpr float allpassGain = 0.5F;

/// Takes both channels `samples` on, a multiple of four and no further than any line's end.
/// Real-time: yes.
void runBoth(const ReverbRun& left,
             const ReverbRun& right,
             std::size_t samples,
             const ReverbTone& tone,
             Instructions instructions) noexcept;

} // namespace velmora
