// ReverbLines.h: the delay lines of both channels, and larger ones for a rate nobody expected.
#pragma once

#include "effects/ReverbChannel.h"

#include <atomic>
#include <memory>
#include <span>
#include <vector>

namespace velmora {

/// The right channel's lines are longer by the stereo spread.
struct ReverbLines {
    ReverbChannel left, right;

    /// Threads: before an audio thread owns the lines. Real-time: no.
    void reserve(double sampleRate);
    /// Real-time: yes up to the reserved rate.
    void configure(double sampleRate);
    /// Real-time: yes.
    void clear();
    /// The wet signal in place of a row of samples for each channel, equally long. Real-time: yes.
    void process(std::span<float> leftRow,
                 std::span<float> rightRow,
                 const ReverbTone& tone,
                 Instructions instructions) noexcept;
};

/// Makes larger lines on the control side, so that the audio thread can build for a rate above the
/// reserved one without allocating. Whatever was made lives as long as this object; each is twice
/// what was asked for, so that little is.
class SpareReverbLines {
public:
    explicit SpareReverbLines(double reservedRate) : reservedRate_(reservedRate) {}

    /// Threads: control, one at a time. Real-time: no.
    void reserveFor(double sampleRate);

    /// Larger lines that were not taken yet, or null. Threads: audio. Real-time: yes.
    [[nodiscard]] ReverbLines* take() noexcept {
        return newest_.exchange(nullptr, std::memory_order_acquire);
    }

private:
    double reservedRate_;                            // control
    std::vector<std::unique_ptr<ReverbLines>> made_; // control; the lines are the audio thread's
    std::atomic<ReverbLines*> newest_{nullptr};
};

} // namespace velmora
