#include "app/MeterGlyph.h"

#include <algorithm>
#include <cmath>

namespace velmora {
namespace {

constexpr float silence = 0.001F; // -60 dB
constexpr double rangeDb = 60.0;
constexpr double lowestScale = 0.18;
constexpr double lowestBar = 2.0; // points
constexpr double barWidth = 2.6;  // points
constexpr double barGap = 1.6;    // points
constexpr double leftEdge = 1.3;  // centres the group of 19.4 points
constexpr std::array<double, 5> profile{0.45, 0.75, 1.0, 0.75, 0.45};

/// 0 at -60 dB, 1 at full scale.
double normalized(float level) {
    const double db =
        level > silence ? 20.0 * std::log10(static_cast<double>(level)) + rangeDb : 0.0;
    return db / rangeDb;
}

double scaleOf(float level) {
    const double norm = normalized(level);
    return norm >= 1.0 ? 1.0 : lowestScale + (1.0 - lowestScale) * std::max(norm, 0.0);
}

} // namespace

std::array<MeterBar, 5> meterBars(float level) {
    const double scale = scaleOf(level);
    std::array<MeterBar, profile.size()> bars{};
    for (std::size_t i = 0; i < bars.size(); ++i) {
        const double height = std::max(meterGlyphHeight * profile[i] * scale, lowestBar);
        bars[i] = {.x = leftEdge + (barWidth + barGap) * static_cast<double>(i),
                   .y = (meterGlyphHeight - height) / 2.0,
                   .width = barWidth,
                   .height = height};
    }
    return bars;
}

int meterStep(float level) {
    const double norm = std::clamp(normalized(level), 0.0, 1.0);
    return static_cast<int>(std::lround(norm * meterSteps));
}

float levelOfStep(int step) {
    const double norm = static_cast<double>(step) / meterSteps;
    return static_cast<float>(std::pow(10.0, (norm - 1.0) * rangeDb / 20.0));
}

} // namespace velmora
