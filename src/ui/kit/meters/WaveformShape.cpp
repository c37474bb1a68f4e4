#include "ui/kit/meters/WaveformShape.h"

#include <cmath>
#include <numbers>

namespace velmora {

namespace {

using std::numbers::pi;

struct Sine {
    double waves;
    double speed;
    double height;
};
constexpr std::array<std::array<Sine, WaveformShape::sineCount>, WaveformShape::lineCount> lines{{
    {{{1.7, 0.11, 0.55}, {3.1, -0.17, 0.30}, {5.3, 0.23, 0.15}}},
    {{{2.2, -0.09, 0.50}, {3.7, 0.14, 0.35}, {6.1, -0.20, 0.15}}},
}};

} // namespace

void WaveformShape::setPlaces(std::size_t count) {
    for (std::size_t line = 0; line < lineCount; ++line) {
        for (std::size_t sine = 0; sine < sineCount; ++sine) {
            const auto& [waves, speed, height] = lines[line][sine];
            Table& table = tables_[line][sine];
            table.along.resize(count);
            table.across.resize(count);
            for (std::size_t place = 0; place < count; ++place) {
                const double x = (double(place) + 0.5) / double(count);
                const double shape = height * std::pow(std::sin(pi * x), 2);
                table.along[place] = shape * std::sin(2 * pi * waves * x);
                table.across[place] = shape * std::cos(2 * pi * waves * x);
            }
        }
    }
}

const std::vector<double>& WaveformShape::heights(std::size_t line, double seconds) {
    heights_.assign(places(), 0.0);
    for (std::size_t sine = 0; sine < sineCount; ++sine) {
        const double phase = 2 * pi * (lines[line][sine].speed * seconds + double(line));
        const double cosine = std::cos(phase);
        const double sineOfPhase = std::sin(phase);
        const Table& table = tables_[line][sine];
        for (std::size_t place = 0; place < heights_.size(); ++place) {
            heights_[place] += table.along[place] * cosine + table.across[place] * sineOfPhase;
        }
    }
    return heights_;
}

} // namespace velmora
