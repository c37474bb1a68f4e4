// Reverb.h: adds a room to a source.
#pragma once

#include "effects/FXParams.h"
#include "effects/ReverbLines.h"

#include <span>

namespace velmora {

/// The dry signal plus a room in one of three characters, each channel fed by itself alone.
///
/// Threads: audio only, where nothing else is said.
class Reverb {
public:
    explicit Reverb(Instructions instructions = bestInstructions());

    /// Makes room for rates above 192 kHz. Threads: control, one at a time. Real-time: no.
    void reserveFor(double sampleRate) { spare_.reserveFor(sampleRate); }

    /// Builds the lines when they are first needed and when the rate has changed while the reverb
    /// is on; otherwise the tail goes on. Off keeps lines and tone as they are.
    void retune(const FXParams& params, double sampleRate);
    void reset();
    [[nodiscard]] bool isOn() const noexcept { return isOn_; }
    /// Shape: interleaved stereo, in place. Real-time: yes.
    void process(std::span<float> samples) noexcept;

private:
    void addRoom(std::span<float> samples) noexcept;

    Instructions instructions_;
    ReverbLines lines_;
    SpareReverbLines spare_;
    double sampleRate_{0}; // Hz, also one that came while the reverb was off
    bool isConfigured_{false};
    bool isOn_{false};
    ReverbTone tone_{};
    float wet_{0}; // linear
};

} // namespace velmora
