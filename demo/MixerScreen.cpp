#include "MixerScreen.h"

#include "settings/Theme.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace velmora {
namespace {

constexpr float meterFloorDb = -60.0F;
constexpr float mutedGain = 0.001F;
constexpr int nameCells = 24;
constexpr int gainCells = 9;
constexpr int marksCells = 6;

constexpr std::string_view plain = "\x1b[0m";

bool startsCodePoint(char byte) {
    return (static_cast<std::uint8_t>(byte) & 0xC0U) != 0x80U;
}

bool isControl(char byte) {
    const auto value = static_cast<std::uint8_t>(byte);
    return value < 0x20U || value == 0x7FU;
}

std::string painted(const Color& colour, const std::string& text, bool wanted) {
    if (!wanted) {
        return text;
    }
    const auto byte = [](double component) { return std::to_string(std::lround(component * 255)); };
    return "\x1b[38;2;" + byte(colour.red) + ";" + byte(colour.green) + ";" + byte(colour.blue) +
           "m" + text + std::string(plain);
}

const Color& meterColour(float level) {
    constexpr float nearCeiling = 0.8912509F; // the limiter's ceiling, −1 dBFS
    constexpr float loud = 0.5F;              // −6 dBFS
    return level >= nearCeiling ? Theme::coral : level >= loud ? Theme::sun : Theme::ocean;
}

std::string drawStrip(const StripView& strip, int columns, bool colour) {
    const int fixedCells = 2 + nameCells + 1 + gainCells + 1 + marksCells + 1;
    const int meterCells = std::clamp(columns - fixedCells, 4, 40);
    std::string line = painted(Theme::sun, strip.selected ? "▸ " : "  ", colour);
    line += fitted(strip.name, nameCells) + ' ';
    if (strip.level) {
        line += painted(meterColour(*strip.level), levelBar(*strip.level, meterCells), colour);
    } else {
        line += std::string(static_cast<std::size_t>(meterCells), ' ');
    }
    const std::string gain = gainText(strip.gain);
    const auto width = std::ranges::count_if(gain, startsCodePoint);
    line += std::string(static_cast<std::size_t>(std::max<long>(gainCells - width, 0)), ' ') + gain;
    line += ' ';
    line += strip.hasEffects ? " fx" : "   ";
    line += strip.directMuted ? " ⊘" : "  ";
    return line;
}

} // namespace

std::string gainText(float linear) {
    if (!(linear > mutedGain)) {
        return "−∞ dB";
    }
    const float db = 20.0F * std::log10(linear);
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.1f dB", static_cast<double>(std::fabs(db)));
    const bool isZero = std::string_view(text.data()).starts_with("0.0");
    return std::string(isZero ? "" : db < 0 ? "−" : "+") + text.data();
}

std::string levelBar(float level, int cells) {
    static constexpr std::array<std::string_view, 8> eighths{
        " ", "▏", "▎", "▍", "▌", "▋", "▊", "▉"};
    const float db = level > 0 ? 20.0F * std::log10(level) : meterFloorDb;
    const float filled = std::clamp(1.0F - db / meterFloorDb, 0.0F, 1.0F);
    const int steps = static_cast<int>(std::lround(filled * static_cast<float>(cells) * 8.0F));
    std::string bar;
    for (int cell = 0; cell < cells; ++cell) {
        const int rest = steps - cell * 8;
        bar += rest >= 8 ? "█" : eighths[static_cast<std::size_t>(std::max(rest, 0))];
    }
    return bar;
}

std::string fitted(std::string_view text, int cells) {
    std::string result;
    int used = 0;
    std::size_t lastStart = 0;
    for (const char byte : text) {
        if (startsCodePoint(byte)) {
            if (used == cells) {
                result.resize(lastStart);
                result += "…";
                return result;
            }
            lastStart = result.size();
            ++used;
        }
        result += isControl(byte) ? ' ' : byte;
    }
    return result + std::string(static_cast<std::size_t>(cells - used), ' ');
}

std::vector<std::string> drawMixer(const MixerView& view, int columns, bool colour) {
    std::vector<std::string> lines;
    lines.push_back(
        painted(Theme::ocean, fitted(view.title + "  ·  " + view.state, columns), colour));
    lines.emplace_back();
    for (const StripView& strip : view.strips) {
        lines.push_back(drawStrip(strip, columns, colour));
    }
    lines.emplace_back();
    for (const std::string& notice : view.notices) {
        lines.push_back(painted(Theme::coral, fitted(notice, columns), colour));
    }
    for (const std::string& line : view.footer) {
        lines.push_back(fitted(line, columns));
    }
    return lines;
}

} // namespace velmora
