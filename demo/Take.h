// Take.h: one recorder during the mix.
#pragma once

#include "support/Recording.h"

#include <cstdint>

namespace velmora::demo {

/// Units: seconds into the recording, dB, Hz. Channels from 0. Threads: main.
class Take {
public:
    explicit Take(const support::Recording& recording) : recording_(recording) {}

    void markStart() { mixStart_ = length(); }
    void markEnd() { mixEnd_ = length(); }

    /// Level of a tone shortly before the mix started.
    [[nodiscard]] double before(std::uint32_t channel, double hz) const;
    /// Level of a tone when the mix had long settled: the median of the last seconds' quarters, so
    /// that one block which this machine lost does not count.
    [[nodiscard]] double settled(std::uint32_t channel, double hz) const;
    /// The loudest that the tone was in those seconds.
    [[nodiscard]] double loudest(std::uint32_t channel, double hz) const;
    /// Interruptions of a tone while the mix ran, its start-up left out.
    [[nodiscard]] int breaks(std::uint32_t channel, double hz) const;

private:
    [[nodiscard]] double length() const;
    [[nodiscard]] std::vector<float> part(std::uint32_t channel, double from, double seconds) const;
    [[nodiscard]] std::vector<double> settledLevels(std::uint32_t channel, double hz) const;

    const support::Recording& recording_;
    double mixStart_{};
    double mixEnd_{};
};

} // namespace velmora::demo
