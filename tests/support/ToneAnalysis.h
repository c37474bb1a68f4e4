// ToneAnalysis.h: makes pure tones and finds them again in a recording.
#pragma once

#include "support/WavFile.h"

#include <cstdint>
#include <span>
#include <vector>

namespace velmora::support {

/// One sine per channel. Units: Hz, dB below full scale (0 dB = amplitude 1), seconds.
struct Tone {
    std::vector<double> hz;
    double db = -20;
};

[[nodiscard]] Sound makeTone(const Tone& tone, double seconds, std::uint32_t rateHz = 48000);

[[nodiscard]] double fromDb(double db);   ///< linear
[[nodiscard]] double toDb(double linear); ///< −200 dB for 0

/// Level of the sine of `hz` in one channel's samples, in dB (0 dB = amplitude 1).
///
/// Formula: 2 |Σ w x e^(−jωn)| / Σ w with a Hann window w, so that a tone further away than four
///          times rate / length does not disturb.
[[nodiscard]] double
toneDb(std::span<const float> samples, double hz, std::uint32_t rateHz = 48000);

/// How often the sine of `hz` stops being the continuation of itself: a block that is lost,
/// repeated or silent is one break, blocks lost within 50 ms are one together.
///
/// Formula: phase and amplitude in Hann windows of 1024 frames, every 512; a break is a phase off
///          by more than 1/25 turn, or an amplitude off by more than 5 %, from one window to the
///          next. A lost block of b frames shows unless hz · b / rate is nearly whole.
[[nodiscard]] int
countBreaks(std::span<const float> samples, double hz, std::uint32_t rateHz = 48000);

} // namespace velmora::support
