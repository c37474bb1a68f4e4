#include "operations/Numbers.h"

#include "operations/MuteToggle.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace velmora {

std::optional<double> numberFrom(std::string_view word) {
    if (word.starts_with('+')) {
        word.remove_prefix(1);
        if (word.starts_with('-')) {
            return std::nullopt;
        }
    }
    double number = 0;
    const auto* const end = word.data() + word.size();
    const auto [last, error] = std::from_chars(word.data(), end, number);
    return error == std::errc{} && last == end ? std::optional(number) : std::nullopt;
}

std::string numberText(double number, int decimals) {
    const double scale = std::pow(10.0, decimals);
    double rounded = std::isfinite(number) ? std::round(number * scale) / scale : number;
    if (rounded == 0) {
        rounded = 0; // never "-0"
    }
    std::array<char, 32> text{};
    const auto written = std::to_chars(text.data(), text.data() + text.size(), rounded);
    return {text.data(), written.ptr};
}

std::optional<float> gainFromDb(double db) {
    if (db == -std::numeric_limits<double>::infinity()) {
        return 0.0F;
    }
    if (!(db >= lowestDb && db <= highestDb)) {
        return std::nullopt;
    }
    return static_cast<float>(std::pow(10.0, db / 20.0));
}

double dbFromGain(float gain) {
    if (isMutedGain(gain)) {
        return -std::numeric_limits<double>::infinity();
    }
    return std::round(20.0 * std::log10(static_cast<double>(gain)) * 100.0) / 100.0;
}

std::string dbText(float gain) {
    std::string text = numberText(dbFromGain(gain), 1);
    if (text.find_first_of(".i") == text.npos) {
        text += ".0";
    }
    return text + " dB";
}

} // namespace velmora
