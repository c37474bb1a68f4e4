// WaveformShape.h: how high the drifting accent lines are at each place.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace velmora {

/// Two lines, each the sum of three slow sines in a shape that is flat at both ends.
///
/// Formula: y(x, t) = sin²(πx) · Σ hᵢ sin(2π(wᵢx + vᵢt + line)), with the waves wᵢ in the width,
/// the
///          speed vᵢ in turns a second and heights hᵢ that add up to 1. The places do not change
///          from frame to frame, so that sin(a + b) = sin a cos b + cos a sin b leaves two products
///          a place and sine.
/// Threads: main.
class WaveformShape {
public:
    /// Prepares for so many places, in the middles of as many equal parts of 0 … 1.
    void setPlaces(std::size_t count);
    [[nodiscard]] std::size_t places() const { return tables_[0][0].along.size(); }

    /// −1 … 1 for each place. Valid until the next call.
    /// @param line     0 or 1, the two drift apart
    /// @param seconds  since they began to move
    [[nodiscard]] const std::vector<double>& heights(std::size_t line, double seconds);

    static constexpr std::size_t lineCount = 2;
    static constexpr std::size_t sineCount = 3;

private:
    /// sin and cos of 2πwᵢx, times the sine's height and the shape there.
    struct Table {
        std::vector<double> along;
        std::vector<double> across;
    };

    std::array<std::array<Table, sineCount>, lineCount> tables_;
    std::vector<double> heights_;
};

} // namespace velmora
