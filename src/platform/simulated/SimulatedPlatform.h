// SimulatedPlatform.h: a whole machine in memory, with a clock that tests turn.
#pragma once

#include "platform/Platform.h"
#include "platform/simulated/SimulatedAppearance.h"
#include "platform/simulated/SimulatedApplicationTaps.h"
#include "platform/simulated/SimulatedApplications.h"
#include "platform/simulated/SimulatedAudioDevices.h"
#include "platform/simulated/SimulatedAudioUnits.h"
#include "platform/simulated/SimulatedDefaultsStore.h"
#include "platform/simulated/SimulatedLoginItem.h"
#include "platform/simulated/SimulatedMainQueue.h"
#include "platform/simulated/SimulatedNotices.h"
#include "platform/simulated/SimulatedPublicSinks.h"
#include "platform/simulated/SimulatedShortcuts.h"
#include "platform/simulated/SimulatedSound.h"

#include <chrono>
#include <cstdint>

namespace velmora {

/// Owns one simulated implementation of each platform interface. A new machine has no device, no
/// application and an empty store.
///
/// Threads: main.
class SimulatedPlatform {
public:
    SimulatedPlatform();

    /// What the code under test is given. What was arranged so far has been told by then.
    [[nodiscard]] Platform platform();

    /// Turns the clock: posted work, timers and audio cycles run in order of time.
    void advance(std::chrono::nanoseconds duration);
    /// Turns the clock by whole audio cycles.
    void advanceCycles(std::int64_t cycles);
    /// Turns the clock until so many frames have been moved (whole cycles, rounded up).
    void advanceFrames(std::int64_t frames);
    [[nodiscard]] std::chrono::nanoseconds now() const { return mainQueue.now(); }

    /// Starts a regular application; it has no sound until `sound.play(pid, ...)`.
    void startApplication(std::int32_t pid,
                          const std::string& name,
                          const std::string& bundleID,
                          bool regular = true);
    /// The application leaves: its sound, its process object and itself.
    void quitApplication(std::int32_t pid);
    /// A stereo output, made the default one.
    AudioObjectID addSpeakers();
    /// The stereo device that the stream output looks for.
    AudioObjectID addVirtualMic();

    SimulatedSound sound;
    SimulatedMainQueue mainQueue;
    SimulatedAudioDevices devices;
    SimulatedApplicationTaps taps;
    SimulatedPublicSinks sinks;
    SimulatedAudioUnits units;
    SimulatedApplications applications;
    SimulatedDefaultsStore defaults;
    SimulatedAppearance appearance;
    SimulatedLoginItem loginItem;
    SimulatedShortcuts shortcuts;
    SimulatedNotices notices;

private:
    std::chrono::nanoseconds lastCycle_{};
};

} // namespace velmora
