#include "effects/Biquad.h"

#include <cmath>
#include <numbers>

namespace velmora {
namespace {

struct Angle {
    double cosine;
    double sine;
};

Angle angleOf(double freq, double sampleRate) {
    const double w0 = 2.0 * std::numbers::pi * freq / sampleRate;
    return {std::cos(w0), std::sin(w0)};
}

// Deliberate: 1.414, not the square root of two, in the two pass filters.
constexpr double passQDivisor = 1.414;

Biquad section(double b0, double b1, double b2, double a1, double a2) {
    return {.b0 = static_cast<float>(b0),
            .b1 = static_cast<float>(b1),
            .b2 = static_cast<float>(b2),
            .a1 = static_cast<float>(a1),
            .a2 = static_cast<float>(a2)};
}

/// The terms that both shelves share.
struct Shelf {
    double amplitude;
    double cosine;
    double slope;
};

Shelf shelfOf(double freq, double gainDB, double sampleRate) {
    const auto [c, s] = angleOf(freq, sampleRate);
    const double amplitude = std::pow(10.0, gainDB / 40.0);
    const double alpha = s / 2.0 * std::numbers::sqrt2;
    return {amplitude, c, 2.0 * std::sqrt(amplitude) * alpha};
}

} // namespace

Biquad Biquad::lowShelf(double freq, double gainDB, double sampleRate) {
    const auto [a, c, k] = shelfOf(freq, gainDB, sampleRate);
    const double a0 = (a + 1.0) + (a - 1.0) * c + k;
    return section(a * ((a + 1.0) - (a - 1.0) * c + k) / a0,
                   2.0 * a * ((a - 1.0) - (a + 1.0) * c) / a0,
                   a * ((a + 1.0) - (a - 1.0) * c - k) / a0,
                   -2.0 * ((a - 1.0) + (a + 1.0) * c) / a0,
                   ((a + 1.0) + (a - 1.0) * c - k) / a0);
}

Biquad Biquad::highShelf(double freq, double gainDB, double sampleRate) {
    const auto [a, c, k] = shelfOf(freq, gainDB, sampleRate);
    const double a0 = (a + 1.0) - (a - 1.0) * c + k;
    return section(a * ((a + 1.0) + (a - 1.0) * c + k) / a0,
                   -2.0 * a * ((a - 1.0) + (a + 1.0) * c) / a0,
                   a * ((a + 1.0) + (a - 1.0) * c - k) / a0,
                   2.0 * ((a - 1.0) - (a + 1.0) * c) / a0,
                   ((a + 1.0) - (a - 1.0) * c - k) / a0);
}

Biquad Biquad::highPass(double freq, double sampleRate) {
    const auto [c, s] = angleOf(freq, sampleRate);
    const double alpha = s / passQDivisor;
    const double a0 = 1.0 + alpha;
    const double b0 = (1.0 + c) / 2.0 / a0;
    return section(b0, -(1.0 + c) / a0, b0, -2.0 * c / a0, (1.0 - alpha) / a0);
}

Biquad Biquad::lowPass(double freq, double sampleRate) {
    const auto [c, s] = angleOf(freq, sampleRate);
    const double alpha = s / passQDivisor;
    const double a0 = 1.0 + alpha;
    const double b0 = (1.0 - c) / 2.0 / a0;
    return section(b0, (1.0 - c) / a0, b0, -2.0 * c / a0, (1.0 - alpha) / a0);
}

} // namespace velmora
