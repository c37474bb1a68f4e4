// SoundGraph.h: everything that exists in the simulated machine's audio layer. Private to this
// folder: tests see it through SimulatedSound, the code under test through the interfaces.
#pragma once

#include "platform/AudioHardware.h"
#include "platform/AudioUnits.h"
#include "platform/simulated/DeviceClock.h"
#include "platform/simulated/Refusals.h"
#include "platform/simulated/SimulatedDevice.h"
#include "platform/simulated/SimulatedSound.h"
#include "platform/simulated/Waveform.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>
#include <vector>

namespace velmora {

inline constexpr Status statusNoSuchObject = -2; // as ENOENT
inline constexpr Status statusInvalid = -22;     // as EINVAL

/// One block: one vector per channel.
using ChannelBlock = std::vector<std::vector<float>>;

struct DeviceState {
    AudioObjectID id{};
    SimulatedDevice about;
    Waveform input = silence();
    std::vector<std::string> partUIDs{}; ///< where an aggregate's sound goes as well
    std::uint32_t requestedFrames{};
    DeviceClock clock{};
    ChannelBlock playing{}; ///< this cycle's block
    ChannelBlock heard{};   ///< all blocks so far

    [[nodiscard]] std::uint32_t channels(Scope scope) const;
};

struct ProcessState {
    AudioObjectID id{};
    std::int32_t pid{};
    bool playing{};
    Waveform signal = silence();
};

struct TapState {
    AudioObjectID id{};
    TapDescription about;
    float divisor{1.0F}; ///< of the mixdown, see SimulatedSound::setMixdownDivided
};

struct AggregateState {
    AudioObjectID id{};
    AggregateDescription about;
};

struct IOProcState {
    IOProcID id{};
    AudioObjectID device{};
    IOCallback callback;
    std::uint64_t startedAs{}; ///< 0 = not running; otherwise its place in the order of starts
    std::uint32_t epoch{};     ///< of the service when it was made
};

/// The graph's side of an output or input unit; the unit takes it out when it is destroyed.
struct OutputUnitState {
    AudioObjectID device{};
    std::vector<std::int32_t> map;
    RenderCallback render;
    bool running{};
};

struct InputUnitState {
    AudioObjectID device{};
    ReceiveCallback receive;
    std::uint64_t startedAs{};
};

/// Callers hold `mutex`.
struct SoundGraph {
    std::mutex mutex;

    bool isAvailable{true};
    std::uint32_t epoch{};                                        ///< counts losses of the service
    std::vector<std::function<void(bool)>> availabilityListeners; ///< each posts to the main queue

    Refusals refusals;
    std::vector<DeviceState> devices; ///< in the system's order
    AudioObjectID defaultOutput{};
    std::vector<std::function<void()>> defaultOutputListeners; ///< each posts to the main queue

    std::vector<ProcessState> processes;
    std::map<std::int32_t, std::int32_t> leaderOfHelper;

    std::vector<TapState> taps;
    std::vector<AggregateState> aggregates; ///< all of them; public ones are devices as well
    std::vector<IOProcState> ioProcs;
    std::size_t wrongReleases{};
    std::vector<TapDescription> tapHistory;
    std::vector<AggregateDescription> aggregateHistory;

    std::vector<OutputUnitState*> outputUnits;
    std::vector<InputUnitState*> inputUnits;

    TapBuffers tapBuffers{TapBuffers::filled};
    bool mixdownDivided{true};
    std::int64_t delayedCaptureCycles{};
    std::int64_t skippedOutputCycles{};
    std::int64_t standstillCycles{};
    std::int64_t blockFrames{128};
    double rateHz{48000.0};
    std::int64_t frame{}; ///< frames since the first cycle
    std::function<void()> callbackEntered;
    std::function<void()> callbackLeft;

    [[nodiscard]] AudioObjectID nextObject() { return ++lastObject_; }
    [[nodiscard]] std::uint64_t nextStart() { return ++lastStart_; }
    /// An id that the UID determines, stepped past those in use.
    [[nodiscard]] AudioObjectID idForUID(std::string_view uid) const;

    [[nodiscard]] DeviceState* device(AudioObjectID id);
    [[nodiscard]] DeviceState* deviceByUID(std::string_view uid);
    [[nodiscard]] ProcessState* process(AudioObjectID id);
    [[nodiscard]] std::int32_t leaderOf(std::int32_t pid) const;
    [[nodiscard]] ProcessState* processOfPid(std::int32_t pid);
    ProcessState& makeProcess(std::int32_t pid);
    [[nodiscard]] TapState* tapByUUID(std::string_view uuid);
    [[nodiscard]] AggregateState* aggregate(AudioObjectID id);
    /// One that is not private is a device for everybody, last in the list.
    AudioObjectID makeAggregate(const AggregateDescription& description);
    [[nodiscard]] IOProcState* ioProc(AudioObjectID device, IOProcID id);
    /// How much louder than a tap's mixdown an application is on the present default output.
    [[nodiscard]] float mixdownDivisor();

    void tellAvailability() const;
    void tellDefaultOutput() const;
    /// Ends every callback and every application's connection for good.
    void loseService();

    /// Moves one block through the machine.
    void runCycle();

private:
    void runCallbacks();
    void runCaptures();
    void runIOProc(const IOProcState& proc);
    void handOn(const IOProcState& proc, const AggregateState& device, std::int64_t first);
    void runInput(const InputUnitState& unit);
    void runOutputs();
    void runOutput(const OutputUnitState& unit);
    [[nodiscard]] ChannelBlock rendered(const OutputUnitState& unit);
    void playApplications();
    void keepHeard();
    /// That of the device that applications play on.
    [[nodiscard]] DeviceClock applicationsClock();
    [[nodiscard]] std::vector<float> tapBlock(const TapState& tap, std::int64_t first);
    [[nodiscard]] bool isMuted(AudioObjectID process) const;
    /// Mixes samples into the device's block, `from` frames after its beginning.
    void playInto(DeviceState& target,
                  std::size_t channel,
                  const std::vector<float>& samples,
                  std::int64_t from = 0);
    void callBack(const std::function<void()>& callback) const;

    AudioObjectID lastObject_ = 1000; // clear of small ids that tests give to devices
    std::uint64_t lastStart_ = 0;
};

} // namespace velmora
