// MixOutput.h: one of the two outputs: what it mixes, its volume, its limiter and its gate.
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
class TalkGate;
struct Limiter;

/// Where an output plays: a device and the 1-based channel of its left signal.
struct OutputTarget {
    AudioObjectID device{};
    std::int64_t firstChannel{1};

    bool operator==(const OutputTarget&) const = default;
};

/// Builds and starts an output that plays the mix of `rings` on two neighbouring channels of the
/// device; the limiter's release and the gate's fade are made for the rate at which blocks come.
/// Destroying the unit stops it.
///
/// Threads: main; no render thread may be using `limiter` or `gate`.
/// Errors: throws VelmoraError; nothing is left running.
[[nodiscard]] std::unique_ptr<OutputUnit> makeOutputEngine(AudioDevices& devices,
                                                           AudioUnits& units,
                                                           const OutputTarget& target,
                                                           std::shared_ptr<RingSetBox> rings,
                                                           std::shared_ptr<Limiter> limiter,
                                                           std::shared_ptr<ParamBox> volume,
                                                           std::shared_ptr<TalkGate> gate);

/// Keeps the boxes that its render thread reads across any number of openings.
///
/// Threads: main. Real-time: no; the boxes are what the render thread shares.
class MixOutput {
public:
    /// @param volume  linear
    explicit MixOutput(float volume);
    ~MixOutput();

    /// Opens the device and starts playing silence until rings are given.
    /// Errors: throws VelmoraError; nothing is left running, and it is closed.
    void open(AudioDevices& devices, AudioUnits& units, const OutputTarget& target);
    /// Stops, and lets the limiter begin anew.
    void close();
    /// Where it plays; none while it is closed.
    [[nodiscard]] const std::optional<OutputTarget>& target() const { return target_; }
    /// A closed one has nothing that could have died.
    [[nodiscard]] bool isAlive() const;
    /// Hz, as blocks come now; 0 while it is closed.
    [[nodiscard]] double sampleRate() const;

    /// Of the limiter after the last block, linear; 1 = it does nothing.
    [[nodiscard]] float limiterGain() const;

    void setVolume(float volume);
    /// Open from the beginning. Closed, it plays silence; while it runs, the change fades.
    void setOpen(bool open);
    /// Heard from the next block on.
    void setRings(std::vector<std::shared_ptr<RingBuffer>> rings);

private:
    std::shared_ptr<RingSetBox> rings_;
    std::shared_ptr<Limiter> limiter_; // render thread while the unit runs, main otherwise
    std::shared_ptr<ParamBox> volume_;
    std::shared_ptr<TalkGate> gate_;
    std::unique_ptr<OutputUnit> unit_;
    std::optional<OutputTarget> target_;
};

} // namespace velmora
