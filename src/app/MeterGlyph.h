// MeterGlyph.h: the five bars that show the level in the menu bar, as plain numbers.
#pragma once

#include <array>

namespace velmora {

inline constexpr double meterGlyphWidth = 22.0;  // points
inline constexpr double meterGlyphHeight = 15.0; // points
inline constexpr double meterBarRadius = 1.3;    // points; half of a bar's width

/// Units: points; (0, 0) is the glyph's lower left corner, y grows upwards. Every bar is centred
/// vertically, so the drawing is the same upside down.
struct MeterBar {
    double x{};
    double y{};
    double width{};
    double height{};

    bool operator==(const MeterBar&) const = default;
};

/// The bars for a peak level.
///
/// Formula: the level's place between -60 and 0 dB scales a fixed profile from 18 % to 100 % of
///          its height; no bar is lower than 2 points, so that the glyph never vanishes.
/// @param level  linear, 1.0 = full scale; anything at or below 0.001 counts as silence
[[nodiscard]] std::array<MeterBar, 5> meterBars(float level);

/// Panels redraw, and exchange messages, for every picture that they are given, so the glyph moves
/// in steps of 3.75 dB; one is smaller than a pixel of a usual panel's icon.
inline constexpr int meterSteps = 16;

/// The step that shows `level`: 0 ... meterSteps.
[[nodiscard]] int meterStep(float level);
/// A level that lies in the middle of `step`.
[[nodiscard]] float levelOfStep(int step);

} // namespace velmora
