// Waveform.h: known signals for simulated applications and input devices to play.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace velmora {

/// The sample at `frame` (counted from the simulation's first audio cycle) on `channel` (0-based).
using Waveform = std::function<float(std::int64_t frame, std::size_t channel)>;

/// The same on every channel.
/// @param level  linear peak
[[nodiscard]] Waveform sine(double frequencyHz, float level, double rateHz = 48000.0);
[[nodiscard]] Waveform constant(float value);
[[nodiscard]] Waveform silence();

/// Different on the first two channels; further channels are silent.
[[nodiscard]] Waveform stereo(Waveform left, Waveform right);

/// Channel n carries n (1-based) times `step`: tells apart where a sample came from.
[[nodiscard]] Waveform channelNumbers(float step);

/// `base`, but `value` on every channel at one frame.
[[nodiscard]] Waveform withSample(Waveform base, std::int64_t frame, float value);

} // namespace velmora
