// MixOutput.h: one of the two outputs: what it mixes, its volume and its limiter.
#pragma once

#include "platform/AudioDevices.h"
#include "platform/AudioUnits.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace velmora {

class ParamBox;
class RingBuffer;
class RingSetBox;
struct Limiter;

/// Where an output plays: a device and the 1-based channel of its left signal.
struct OutputTarget {
    AudioObjectID device{};
    std::int64_t firstChannel{1};

    bool operator==(const OutputTarget&) const = default;
};

/// Keeps the boxes that its render thread reads across any number of builds.
///
/// Threads: main. Real-time: no; the boxes are what the render thread shares.
class MixOutput {
public:
    /// @param volume  linear
    explicit MixOutput(float volume);
    ~MixOutput();

    /// Opens the device and starts playing silence until rings are given.
    /// Errors: throws VelmoraError; nothing is left running.
    void open(AudioDevices& devices, AudioUnits& units, const OutputTarget& target);
    /// Stops, and lets the limiter begin anew.
    void close();
    /// Where it plays; none while it is closed.
    [[nodiscard]] const std::optional<OutputTarget>& target() const { return target_; }

    /// False while it is closed, and once what it plays through has died.
    [[nodiscard]] bool isAlive() const { return unit_ && unit_->isAlive(); }

    void setVolume(float volume);
    /// Heard from the next block on.
    void setRings(std::vector<std::shared_ptr<RingBuffer>> rings);

private:
    std::shared_ptr<RingSetBox> rings_;
    std::shared_ptr<Limiter> limiter_; // render thread while the unit runs, main otherwise
    std::shared_ptr<ParamBox> volume_;
    std::unique_ptr<OutputUnit> unit_;
    std::optional<OutputTarget> target_;
};

} // namespace velmora
