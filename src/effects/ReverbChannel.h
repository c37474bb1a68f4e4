// ReverbChannel.h: a small room for one channel.
#pragma once

#include "effects/vector/ReverbRun.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace velmora {

/// Four parallel damped feedback combs, then two allpasses in series.
///
/// Formula: comb: store = (1 - damp)·out + damp·store; line = x + feedback·store.
///          allpass: line = a + 0.5·b; out = b - a.
/// Source:  M. R. Schroeder 1962, J. A. Moorer 1979.
/// Threads: one owner; no internal locking.
class ReverbChannel {
public:
    /// Makes room for the lines of `sampleRate`, so that configuring for that rate or a lower one
    /// allocates nothing. The channel sounds as before.
    /// Threads: before the audio thread runs. Real-time: no.
    void reserve(double sampleRate, std::int64_t offset);

    /// Builds silent lines. Units: Hz; `offset`: stereo spread, in samples at 44.1 kHz.
    /// Real-time: yes up to the reserved rate, no above it (the lines grow).
    /// Errors: aborts on a rate or offset that gives no line length at all.
    void configure(double sampleRate, std::int64_t offset);

    /// Silences the lines; their positions stay where they are. Real-time: yes.
    void clear();

    /// One sample in, the wet signal out; 0 before the first `configure`. Real-time: yes.
    float process(float input, float feedback, float damp) noexcept;

    [[nodiscard]] bool isConfigured() const noexcept { return !combs_.front().samples.empty(); }
    /// How many samples every line can go on without starting over; at least 1 once configured.
    [[nodiscard]] std::size_t beforeAnyEnd() const noexcept;
    /// The lines at their positions, for `signal` to be taken along them. Whoever does so moves the
    /// positions on by `advance`, no further than `beforeAnyEnd`.
    [[nodiscard]] ReverbRun runFor(float* signal) noexcept;
    void advance(std::size_t samples) noexcept;

private:
    struct Line {
        std::vector<float> samples;
        std::size_t position{0};

        [[nodiscard]] float& now() noexcept { return samples[position]; }
        [[nodiscard]] std::size_t beforeEnd() const noexcept { return samples.size() - position; }
        void advance(std::size_t count) noexcept {
            position = count < beforeEnd() ? position + count : 0;
        }
    };
    template <typename Call>
    void forEachLine(Call call);

    std::array<Line, 4> combs_;
    std::array<float, 4> stores_{}; // each comb's damping low-pass
    std::array<Line, 2> allpasses_;
};

} // namespace velmora
