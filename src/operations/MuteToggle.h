// MuteToggle.h: silences a fader and finds the way back.
#pragma once

#include <string>

namespace velmora {

class AudioSource;
class DefaultsStore;

/// Whether a control may set this linear gain: a number, and not negative.
[[nodiscard]] bool isGain(float gain);

/// At or below this linear gain a fader counts as muted; what is no number does too.
[[nodiscard]] bool isMutedGain(float gain);

/// The gain that toggling leads to. Muting keeps `gain` under `key`, so that it comes back even
/// after a restart; unmuting gives what is kept there, or unity when that would be silence.
/// Threads: main.
[[nodiscard]] float toggledGain(DefaultsStore& defaults, const std::string& key, float gain);

// Where the gain from before muting is kept.
[[nodiscard]] std::string premuteKey(const AudioSource& source);
inline constexpr const char* streamPremuteKey = "streamVolume.premute";
inline constexpr const char* headphonePremuteKey = "headphoneVolume.premute";

} // namespace velmora
