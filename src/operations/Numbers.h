// Numbers.h: numbers and levels as words, the same in every language and under every locale.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmora {

inline constexpr double lowestDb = -60.0; ///< of a fader; below it is silence alone
inline constexpr double highestDb = 6.0;

/// A whole word: "-6", "+1.5", "-inf". None for anything else; "nan" is a number here.
[[nodiscard]] std::optional<double> numberFrom(std::string_view word);
/// At most `decimals` of them, without trailing zeros: "20", "-1.5", "-inf".
[[nodiscard]] std::string numberText(double number, int decimals);

/// None for what no fader takes: minus infinity is silence.
[[nodiscard]] std::optional<float> gainFromDb(double db);
/// Rounded to hundredths; minus infinity for silence.
[[nodiscard]] double dbFromGain(float gain);
/// "-6.0 dB", "-inf dB".
[[nodiscard]] std::string dbText(float gain);

} // namespace velmora
