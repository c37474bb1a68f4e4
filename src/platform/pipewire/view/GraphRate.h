// GraphRate.h: how many frames a second the graph runs at, as far as is known.
#pragma once

#include <cstdint>

namespace velmora::pipewire {

/// The settings name a rate, but a graph that may choose among several runs at another one while
/// a program asks for it. So what the cycles of our node say counts, and where there is no such
/// node, what they said last, until the settings name another rate.
///
/// Threads: one at a time. Units: Hz.
class GraphRate {
public:
    /// Never 0.
    [[nodiscard]] double hz() const { return hz_; }

    /// What the settings name now.
    void configure(double hz);
    /// What the latest cycle ran at; 0 = there was none yet. To be told at steady intervals: a rate
    /// counts when it is seen twice, because a node that is just being linked passes through the
    /// hands of several clocks.
    void measure(std::uint32_t hz);
    /// Our node is not called any more.
    void stopMeasuring();

private:
    double hz_ = 48000.0; // the daemon's own default
    double configured_ = 0;
    std::uint32_t measured_ = 0;
};

} // namespace velmora::pipewire
