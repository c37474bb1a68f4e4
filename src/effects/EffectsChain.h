// EffectsChain.h: one source's effects, in their fixed order.
#pragma once

#include "effects/Compressor.h"
#include "effects/FXParams.h"
#include "effects/LevelStage.h"
#include "effects/LowCut.h"
#include "effects/Mailbox.h"
#include "effects/NoiseReduction.h"
#include "effects/PlosiveGuard.h"
#include "effects/Reverb.h"
#include "effects/Stages.h"
#include "effects/Tilt.h"

#include <cstdint>
#include <mutex>
#include <span>

namespace velmora {

/// Processes one source in place. The control side hands over parameters, sample rate and bypass;
/// the audio thread takes over the latest of them as one value at the start of its next block.
///
/// A neutral or bypassed chain leaves its blocks untouched, bad samples included. An active one
/// gives finite samples only, and no infinity or not-a-number leaves its state bad. Bypass switches
/// hard, without a crossfade. Leaving bypass, a new sample rate, and the step away from neutral
/// start all stages afresh; other edits glide on from the running state. A stage that is off
/// freezes.
///
/// Deliberate: finite samples are arithmetic, however large. One near the end of the number range
/// (10^38) makes a filter overflow and may leave it ringing until the chain starts afresh.
///
/// Decaying states pass through denormal numbers: have the audio thread flush those.
class EffectsChain {
public:
    /// @param instructions  available ones; the sound is the same with any
    explicit EffectsChain(const FXParams& params = {},
                          Instructions instructions = bestInstructions());
    EffectsChain(const EffectsChain&) = delete;
    EffectsChain& operator=(const EffectsChain&) = delete;

    /// Threads: any but the audio thread. Real-time: no.
    void setParams(const FXParams& params);
    /// Threads and Real-time: as `setParams`. Units: Hz, 48000 until set.
    /// Errors: a rate that no device can have (0, not finite, above 12.288 MHz) changes nothing.
    void setSampleRate(double hz);
    /// Threads and Real-time: as `setParams`.
    void setBypass(bool isBypassed);

    /// Shape: interleaved stereo, in place; an odd last float is left alone.
    /// @param count  floats, twice the number of frames
    /// Threads: audio. Real-time: yes (a takeover computes coefficients within the block).
    void process(float* interleaved, std::int64_t count) noexcept;

private:
    struct Settings {
        FXParams params;
        double sampleRate{48000.0}; // Hz
        bool isBypassed{false};
    };

    void takeOver(const Settings& next);
    void run(std::span<float> samples) noexcept;

    std::mutex control_; // keeps the control threads apart; the audio thread never takes it
    Settings wanted_;    // guarded by control_
    Mailbox<Settings> mailbox_;

    // audio thread
    Settings inForce_;
    Stages<LowCut, PlosiveGuard, Tilt, NoiseReduction, Compressor, LevelStage> stages_;
    Reverb reverb_; // behind them: its lines are too long to be kept while a block is tried
};

} // namespace velmora
