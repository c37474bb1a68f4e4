// SoundGraph.h: everything that exists in the simulated machine's audio layer. Private to this
// folder: tests see it through SimulatedSound, the code under test through the interfaces.
#pragma once

#include "platform/ApplicationTaps.h"
#include "platform/AudioDevices.h"
#include "platform/AudioUnits.h"
#include "platform/PublicSinks.h"
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
inline constexpr Status statusBusy = -16;        // as EBUSY
inline constexpr Status statusExists = -17;      // as EEXIST
inline constexpr Status statusInvalid = -22;     // as EINVAL

/// One block: one vector per channel.
using ChannelBlock = std::vector<std::vector<float>>;

struct DeviceState {
    AudioObjectID id{};
    SimulatedDevice about;
    Waveform input = silence();
    std::vector<std::string> partUIDs{}; ///< where a public sink's sound goes
    DeviceVolume volume{};               ///< shown, and without effect on what is heard
    std::uint32_t requestedFrames{};
    DeviceClock clock{};
    ChannelBlock playing{}; ///< this cycle's block
    ChannelBlock heard{};   ///< all blocks so far

    [[nodiscard]] std::uint32_t channels(Scope scope) const;
    [[nodiscard]] std::optional<DeviceVolume> recordingVolume() const;
};

struct ProcessState {
    AudioObjectID id{};
    std::int32_t pid{};
    bool playing{};
    ApplicationSound sound{};
    Waveform signal = silence();
};

struct RecordingState {
    std::int32_t pid{};
    AudioObjectID device{};
    bool isMeter{};
};

struct SinkState {
    AudioObjectID id{};
    PublicSink about;
};

// The graph's side of a tap or a unit, which takes it out when it is destroyed. `startedAs` is its
// place in the order of starts, 0 while it is not started.

struct TapState {
    TapRequest about;
    TapCallback callback;
    float divisor{1.0F}; ///< of the mixdown, see SimulatedSound::setMixdownDivided
    std::uint64_t startedAs{};
    bool isAlive{true};
};

struct UnitState {
    AudioObjectID device{}; ///< 0 = not pointed at one yet
    std::uint64_t startedAs{};
    bool isAlive{true};
};

struct OutputUnitState : UnitState {
    std::vector<std::int32_t> map;
    RenderCallback render;
};

struct InputUnitState : UnitState {
    std::uint32_t channels{}; ///< of the device when the unit was pointed at it
    std::uint32_t first{};    ///< 0-based, of those that are handed over
    std::uint32_t count{};
    ReceiveCallback receive;
};

/// Callers hold `mutex`.
struct SoundGraph {
    std::mutex mutex;

    bool isAvailable{true};
    // These post to the main queue.
    std::function<void()> tellChanged = [] {};
    std::function<void()> tellDefaultOutput = [] {};

    Refusals refusals;
    std::vector<DeviceState> devices; ///< in the system's order
    AudioObjectID defaultOutput{};

    std::vector<ProcessState> processes;
    std::map<std::int32_t, std::int32_t> leaderOfHelper;
    std::vector<RecordingState> recordings; ///< by other programs

    std::vector<SinkState> sinks; ///< they are devices as well
    std::size_t wrongReleases{};
    std::vector<TapRequest> openedTaps;
    std::vector<PublicSink> createdSinks;

    std::vector<TapState*> taps;
    std::vector<OutputUnitState*> outputUnits;
    std::vector<InputUnitState*> inputUnits;

    TapBlocks tapBlocks{TapBlocks::filled};
    bool mixdownDivided{true};
    std::int64_t delayedCaptureCycles{};
    std::int64_t skippedOutputCycles{};
    std::int64_t standstillCycles{};
    std::int64_t blockFrames{128};            ///< of the cycle under way
    std::optional<std::int64_t> wantedFrames; ///< by somebody else, whatever we ask for
    std::int64_t leastFrames{};               ///< asked for by our units
    std::uint64_t missedCycles{};
    bool isRealTime{true};
    double rateHz{48000.0};
    std::int64_t frame{}; ///< frames since the first cycle
    std::function<void()> callbackEntered;
    std::function<void()> callbackLeft;

    [[nodiscard]] AudioObjectID nextObject() { return ++lastObject_; }
    [[nodiscard]] std::uint64_t nextStart() { return ++lastStart_; }
    /// An id that the UID determines, stepped past those in use.
    [[nodiscard]] AudioObjectID idForUID(std::string_view uid) const;

    [[nodiscard]] DeviceState* device(AudioObjectID id);
    [[nodiscard]] const DeviceState* device(AudioObjectID id) const;
    [[nodiscard]] DeviceState* deviceByUID(std::string_view uid);
    [[nodiscard]] ProcessState* process(AudioObjectID id);
    [[nodiscard]] std::int32_t leaderOf(std::int32_t pid) const;
    [[nodiscard]] ProcessState* processOfPid(std::int32_t pid);
    ProcessState& makeProcess(std::int32_t pid);
    [[nodiscard]] Recorders recorders(AudioObjectID device);
    void endRecordings(std::int32_t pid);
    /// It becomes a device for everybody, last in the list.
    AudioObjectID makeSink(const PublicSink& sink);
    bool removeSink(AudioObjectID id);

    [[nodiscard]] bool isAnythingStarted() const;
    [[nodiscard]] std::int64_t nextBlockFrames() const;

    /// Ends every tap, every unit that has a device and every application's connection for good.
    void loseService();
    /// Ends every tap and every started unit for good.
    void killStarted();

    /// Moves one block through the machine.
    void runCycle();

private:
    void runCallbacks();
    void runCaptures();
    void runTap(const TapState& tap);
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
