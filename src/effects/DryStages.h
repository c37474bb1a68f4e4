// DryStages.h: the stages before the room, in their fixed order.
#pragma once

#include "effects/Compressor.h"
#include "effects/FXParams.h"
#include "effects/LevelStage.h"
#include "effects/LowCut.h"
#include "effects/NoiseReduction.h"
#include "effects/PlosiveGuard.h"
#include "effects/Tilt.h"

#include <span>

namespace velmora {

/// A plain value, small enough to be kept while a block is tried.
///
/// Threads: audio only.
class DryStages {
public:
    void retune(const FXParams& params, double sampleRate);
    void reset() noexcept;

    /// Nothing feeds back from a later stage, so that each may run ahead of the next one: this
    /// gives the same samples as going frame by frame. Shape: interleaved stereo, in place.
    /// Real-time: yes.
    void process(std::span<float> samples) noexcept;

private:
    void tryBlock(std::span<float> samples) noexcept;
    void runUnchecked(std::span<float> samples) noexcept;
    void runFirstWave(std::span<float> samples) noexcept;
    void runSecondWave(std::span<float> samples) noexcept;
    void runChecked(std::span<float> samples) noexcept;
    [[nodiscard]] bool areFinite() const noexcept;

    LowCut lowCut_;
    PlosiveGuard plosiveGuard_;
    Tilt tilt_;
    NoiseReduction noiseReduction_;
    Compressor compressor_;
    LevelStage levelStage_;
};

} // namespace velmora
