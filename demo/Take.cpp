#include "Take.h"

#include "support/ToneAnalysis.h"

#include <algorithm>

namespace velmora::demo {
namespace {

constexpr double rateHz = 48000;
constexpr double startUp = 2;    // seconds until a mix has settled
constexpr double heldBack = 0.3; // seconds that a recorder may lag behind
constexpr double quarter = 0.25;
constexpr int quarters = 12; // the last three seconds

} // namespace

double Take::length() const {
    return static_cast<double>(recording_.frames()) / rateHz;
}

std::vector<float> Take::part(std::uint32_t channel, double from, double seconds) const {
    const auto frames = [](double time) {
        return static_cast<std::size_t>(std::max(time, 0.0) * rateHz);
    };
    return recording_.all().channel(channel, frames(from), frames(seconds));
}

double Take::before(std::uint32_t channel, double hz) const {
    return support::toneDb(part(channel, mixStart_ - quarter, quarter), hz);
}

std::vector<double> Take::settledLevels(std::uint32_t channel, double hz) const {
    const double begin = mixEnd_ - heldBack - quarters * quarter;
    const auto samples = part(channel, begin, quarters * quarter);
    std::vector<double> levels;
    const std::size_t each = samples.size() / quarters;
    for (std::size_t i = 0; i < quarters; ++i) {
        levels.push_back(support::toneDb(std::span(samples).subspan(i * each, each), hz));
    }
    return levels;
}

double Take::settled(std::uint32_t channel, double hz) const {
    auto levels = settledLevels(channel, hz);
    const auto middle = levels.begin() + quarters / 2;
    std::ranges::nth_element(levels, middle);
    return *middle;
}

double Take::loudest(std::uint32_t channel, double hz) const {
    return std::ranges::max(settledLevels(channel, hz));
}

int Take::breaks(std::uint32_t channel, double hz) const {
    const double begin = mixStart_ + startUp;
    return support::countBreaks(part(channel, begin, mixEnd_ - begin - heldBack), hz);
}

} // namespace velmora::demo
