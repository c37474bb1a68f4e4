#include "platform/simulated/SimulatedPlatform.h"

#include <algorithm>

namespace velmora {

SimulatedPlatform::SimulatedPlatform()
    : devices(sound, mainQueue), taps(sound), sinks(sound), units(sound), applications(mainQueue) {
}

Platform SimulatedPlatform::platform() {
    mainQueue.advance({});
    return {.devices = devices,
            .taps = taps,
            .sinks = sinks,
            .units = units,
            .applications = applications,
            .defaults = defaults,
            .mainQueue = mainQueue,
            .appearance = appearance,
            .loginItem = loginItem,
            .shortcuts = shortcuts,
            .notices = notices};
}

void SimulatedPlatform::advance(std::chrono::nanoseconds duration) {
    const auto end = now() + duration;
    mainQueue.advance({});
    while (lastCycle_ + sound.cyclePeriod() <= end) {
        lastCycle_ += sound.cyclePeriod();
        mainQueue.runUntil(lastCycle_);
        sound.runCycle();
    }
    mainQueue.runUntil(end);
}

void SimulatedPlatform::advanceCycles(std::int64_t cycles) {
    for (std::int64_t cycle = 0; cycle < cycles; ++cycle) {
        advance(lastCycle_ + sound.cyclePeriod() - now());
    }
}

void SimulatedPlatform::advanceFrames(std::int64_t frames) {
    for (std::int64_t moved = 0; moved < frames;) {
        moved += sound.blockFrames();
        advanceCycles(1);
    }
}

void SimulatedPlatform::startApplication(std::int32_t pid,
                                         const std::string& name,
                                         const std::string& bundleID,
                                         bool regular) {
    applications.run({.pid = pid, .name = name, .bundleID = bundleID, .regular = regular});
}

void SimulatedPlatform::quitApplication(std::int32_t pid) {
    sound.endProcess(pid);
    applications.quit(pid);
}

AudioObjectID SimulatedPlatform::addSpeakers() {
    const AudioObjectID speakers =
        sound.addDevice({.uid = "speakers", .name = "Speakers", .outputs = {2}});
    sound.setDefaultOutput(speakers);
    return speakers;
}

AudioObjectID SimulatedPlatform::addVirtualMic() {
    return sound.addDevice({.uid = "velmora_mic",
                            .name = "Velmora Microphone",
                            .outputs = {2},
                            .inputs = {2},
                            .transport = Transport::virtualDevice});
}

} // namespace velmora
