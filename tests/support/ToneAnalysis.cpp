#include "support/ToneAnalysis.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

namespace velmora::support {
namespace {

constexpr double turn = 2 * std::numbers::pi;

/// Amplitude and phase of the sine of `hz` at the first of `samples`.
std::complex<double> phasor(std::span<const float> samples, double hz, std::uint32_t rateHz) {
    const auto length = static_cast<double>(samples.size());
    std::complex<double> sum;
    double weights = 0;
    for (std::size_t n = 0; n < samples.size(); ++n) {
        const auto at = static_cast<double>(n);
        const double weight = 0.5 - 0.5 * std::cos(turn * (at + 0.5) / length);
        sum += weight * static_cast<double>(samples[n]) * std::polar(1.0, -turn * hz * at / rateHz);
        weights += weight;
    }
    return weights > 0 ? 2.0 * sum / weights : 0;
}

} // namespace

double fromDb(double db) {
    return std::pow(10.0, db / 20.0);
}

double toDb(double linear) {
    constexpr double nothing = 1e-10; // −200 dB
    return 20.0 * std::log10(std::max(linear, nothing));
}

Sound makeTone(const Tone& tone, double seconds, std::uint32_t rateHz) {
    Sound sound{
        .samples = {}, .channels = static_cast<std::uint32_t>(tone.hz.size()), .rateHz = rateHz};
    const auto frames = static_cast<std::size_t>(std::llround(seconds * rateHz));
    const double amplitude = fromDb(tone.db);
    sound.samples.reserve(frames * tone.hz.size());
    for (std::size_t frame = 0; frame < frames; ++frame) {
        for (const double hz : tone.hz) {
            const double turns = hz * static_cast<double>(frame) / rateHz;
            sound.samples.push_back(static_cast<float>(amplitude * std::sin(turn * turns)));
        }
    }
    return sound;
}

double toneDb(std::span<const float> samples, double hz, std::uint32_t rateHz) {
    return toDb(std::abs(phasor(samples, hz, rateHz)));
}

int countBreaks(std::span<const float> samples, double hz, std::uint32_t rateHz) {
    constexpr std::size_t window = 1024;
    constexpr std::size_t hop = window / 2;
    constexpr double phaseTolerance = turn / 25;
    constexpr double amplitudeTolerance = 0.05;
    const auto together = static_cast<std::size_t>(0.05 * rateHz) / hop; // windows

    const double advance = turn * hz * hop / rateHz;
    int breaks = 0;
    std::size_t calm = together; // windows since the last disturbed one
    std::complex<double> previous;
    for (std::size_t first = 0; first + window <= samples.size(); first += hop) {
        const auto now = phasor(samples.subspan(first, window), hz, rateHz);
        const auto expected = previous * std::polar(1.0, advance);
        const bool disturbed =
            first > 0 && (std::abs(std::arg(now * std::conj(expected))) > phaseTolerance ||
                          std::abs(std::abs(now) - std::abs(expected)) >
                              amplitudeTolerance * std::abs(expected));
        if (disturbed && calm >= together) {
            ++breaks;
        }
        calm = disturbed ? 0 : calm + 1;
        previous = now;
    }
    return breaks;
}

} // namespace velmora::support
