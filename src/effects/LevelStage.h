// LevelStage.h: rides the level towards a common loudness, or applies the user's own gain.
#pragma once

#include "effects/Check.h"
#include "effects/FXParams.h"

#include <span>

namespace velmora {

/// Tracks the mean square and glides one gain, both channels alike. Automatic: towards an RMS of
/// about -18 dBFS, within -12 … +18 dB, held while the input is below about -49 dBFS so that
/// silence is not pumped up. Manual: towards the given gain.
///
/// Threads: audio only.
class LevelStage {
public:
    void retune(const FXParams& params, double sampleRate);
    void reset() noexcept;
    /// Shape: interleaved stereo, in place. Real-time: yes.
    void process(std::span<float> samples, Check check = Check::everyFrame) noexcept;
    [[nodiscard]] bool isFinite() const noexcept;

private:
    struct State {
        float meanSquare{0};
        float gain{1};
    };
    template <Check check, bool isAutomatic>
    void run(std::span<float> samples) noexcept;
    template <Check check>
    void glideAutomatically(State& state) const noexcept;

    State state_;
    float meanSquareCoefficient_{0};
    float slew_{0};       // of the automatic gain
    float manualGain_{1}; // linear
    bool isAutomatic_{true};
};

} // namespace velmora
