// Sine.h: a tone that a client plays block by block.
#pragma once

#include <cmath>
#include <cstdint>
#include <numbers>

namespace velmora::support {

/// Threads: the real-time thread of the client's node.
class Sine {
public:
    Sine(double hz, double db, double rateHz = 48000)
        : turnsPerFrame_(hz / rateHz), amplitude_(std::pow(10.0, db / 20.0)) {}

    /// Writes `frames` floats, one every `stride`.
    void fill(float* out, std::uint32_t frames, std::size_t stride = 1) {
        for (std::uint32_t i = 0; i < frames; ++i) {
            out[i * stride] =
                static_cast<float>(amplitude_ * std::sin(2 * std::numbers::pi * turns_));
            turns_ += turnsPerFrame_;
            turns_ -= std::floor(turns_);
        }
    }

private:
    double turnsPerFrame_;
    double amplitude_;
    double turns_ = 0; // position within the period, 0 ... 1
};

} // namespace velmora::support
