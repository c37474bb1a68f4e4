// MixerScreen.h: the mix as lines of text for a terminal.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// One line of the screen: a source, or one of the two volumes.
struct StripView {
    std::string name;
    std::optional<float> level; ///< meter value, 0 … 1; none for a line without a meter
    float gain{1.0F};           ///< linear
    bool directMuted{};
    bool hasEffects{};
    bool selected{};
};

struct MixerView {
    std::string title;
    std::string state;
    std::vector<StripView> strips;
    std::vector<std::string> notices; ///< errors and hints, one line each
    std::vector<std::string> footer;
};

/// "−12,0 dB" the way a fader shows it: one decimal, a true minus, "−∞" at or below 0.001.
[[nodiscard]] std::string gainText(float linear);

/// A meter of `cells` characters over −60 … 0 dBFS in steps of an eighth of a character.
[[nodiscard]] std::string levelBar(float level, int cells);

/// Cuts or pads to exactly `cells` characters; a cut text ends in "…". Control characters become
/// spaces, so that a program's or a device's name cannot steer the terminal.
/// Units: one character per Unicode code point.
[[nodiscard]] std::string fitted(std::string_view text, int cells);

/// The lines of the screen, none longer than `columns` characters, without line ends.
/// With `colour` they carry terminal colour sequences besides.
[[nodiscard]] std::vector<std::string> drawMixer(const MixerView& view, int columns, bool colour);

} // namespace velmora
