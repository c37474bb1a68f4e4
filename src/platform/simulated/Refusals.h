// Refusals.h: makes operations of the simulated audio layer fail on demand.
#pragma once

#include "platform/AudioDevices.h"
#include "platform/Status.h"

#include <cstddef>
#include <map>
#include <optional>
#include <utility>

namespace velmora {

/// Every operation of the audio interfaces that can fail. Opening a tap has one for each step.
/// A refused read gives none; a refused `makeOutput` or `makeInput` gives no unit.
enum class Operation {
    processObjects,
    processPid,
    processIsRunningOutput,
    processForPid,
    processSound,
    devices,
    deviceName,
    deviceUID,
    streamChannels,
    transport,
    nominalRate,
    requestBufferFrames,
    defaultOutputDevice,
    recorders,
    recordingVolume,
    setRecordingVolume,
    tapRate,
    openTap,
    openTapDevice,
    openTapCallback,
    openTapStart,
    createSink,
    removeSink,
    makeOutput,
    setOutputDevice,
    setChannelMap,
    startOutput,
    makeInput,
    setInputDevice,
    startInput,
};

/// What is refused at present, and with which status. Threads: guarded by its owner.
class Refusals {
public:
    static constexpr Status defaultStatus = -1;

    /// @param object  only for this device or process; 0 = for every one
    void refuse(Operation operation, Status status = defaultStatus, AudioObjectID object = 0);
    void allow(Operation operation, AudioObjectID object = 0);

    /// To be asked once for each request: what is refused is counted.
    [[nodiscard]] std::optional<Status> find(Operation operation, AudioObjectID object = 0);
    /// How many requests of this kind were refused so far.
    [[nodiscard]] std::size_t given(Operation operation) const;

private:
    std::map<Operation, std::size_t> given_;
    std::map<std::pair<Operation, AudioObjectID>, Status> statuses_;
};

} // namespace velmora
