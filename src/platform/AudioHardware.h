// AudioHardware.h: the machine's audio devices, the applications that play, and their taps.
#pragma once

#include "platform/Status.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace velmora {

/// Device, process object, tap or aggregate. 0 = none.
using AudioObjectID = std::uint32_t;
using IOProcID = std::uint32_t;

enum class Scope { input, output };
enum class Transport { other, virtualDevice, aggregate };
enum class MuteBehavior { unmuted, mutedWhenTapped };

/// A stereo mixdown of everything that one process object plays.
struct TapDescription {
    AudioObjectID process{};
    std::string uuid;
    bool isPrivate{true};
    MuteBehavior mute{MuteBehavior::unmuted};
};

struct SubDevice {
    std::string uid;
    bool driftCompensation{};
};

/// A device made of taps or of other devices.
struct AggregateDescription {
    std::string name;
    std::string uid;
    bool isPrivate{};
    bool tapAutoStart{};
    std::vector<std::string> taps; ///< UUIDs of taps
    bool stacked{};
    std::string masterUID;
    std::vector<SubDevice> subDevices;
};

/// One buffer of an I/O callback.
/// Shape: interleaved stereo, `samples` floats = 2 × frames; may be changed in place; `data` may
/// be null when the buffer holds nothing.
struct IOBuffer {
    float* data{};
    std::int64_t samples{};
};

/// Threads: the device's own real-time thread. Must not allocate, block or throw.
using IOCallback = std::function<void(std::span<IOBuffer>)>;

/// Reads give none when the object is gone or does not answer; requests give the status with which
/// they were refused. Threads: main. Real-time: no.
class AudioHardware {
public:
    virtual ~AudioHardware() = default;

    // -- the audio service itself --

    /// False while the service does not answer: every read gives none, every request is refused.
    [[nodiscard]] virtual bool isAvailable() const = 0;
    /// Adds a listener, called on the main queue with false when the service was lost, and with
    /// true when it answers again. Lives as long as this object.
    virtual void onAvailabilityChange(std::function<void(bool isAvailable)> listener) = 0;
    /// Another number means that what was made before is dead; stopping and destroying it stays
    /// harmless. It changes no later than the service answers again.
    [[nodiscard]] virtual std::uint32_t generation() const = 0;

    // -- applications that have played since they connected --

    /// In the system's order; none when the audio service does not answer.
    [[nodiscard]] virtual std::optional<std::vector<AudioObjectID>> processObjects() const = 0;
    [[nodiscard]] virtual std::optional<std::int32_t> processPid(AudioObjectID process) const = 0;
    [[nodiscard]] virtual std::optional<bool>
    processIsRunningOutput(AudioObjectID process) const = 0;
    /// The process object of the application that `pid` belongs to; none or 0 when it has none.
    [[nodiscard]] virtual std::optional<AudioObjectID> processForPid(std::int32_t pid) const = 0;

    // -- devices --

    /// In the system's order; none when the audio service does not answer.
    [[nodiscard]] virtual std::optional<std::vector<AudioObjectID>> devices() const = 0;
    [[nodiscard]] virtual std::optional<std::string> deviceName(AudioObjectID device) const = 0;
    [[nodiscard]] virtual std::optional<std::string> deviceUID(AudioObjectID device) const = 0;
    /// Channel count of each stream in one direction; an empty list when it has none there.
    [[nodiscard]] virtual std::optional<std::vector<std::uint32_t>>
    streamChannels(AudioObjectID device, Scope scope) const = 0;
    [[nodiscard]] virtual std::optional<Transport> transport(AudioObjectID device) const = 0;
    /// Hz. Also answers for an aggregate made by `createAggregate`.
    [[nodiscard]] virtual std::optional<double> nominalRate(AudioObjectID device) const = 0;
    virtual Status requestBufferFrames(AudioObjectID device, std::uint32_t frames) = 0;

    [[nodiscard]] virtual std::optional<AudioObjectID> defaultOutputDevice() const = 0;
    /// Called on the main queue after each change of the default output device, and after the audio
    /// service came back. Lives as long as this object.
    virtual void onDefaultOutputChange(std::function<void()> listener) = 0;

    // -- capture of an application --

    virtual StatusOr<AudioObjectID> createTap(const TapDescription& description) = 0;
    virtual Status destroyTap(AudioObjectID tap) = 0;
    virtual StatusOr<AudioObjectID> createAggregate(const AggregateDescription& description) = 0;
    virtual Status destroyAggregate(AudioObjectID device) = 0;
    virtual StatusOr<IOProcID> createIOProc(AudioObjectID device, IOCallback callback) = 0;
    /// When this returns, the callback is gone and does not run.
    virtual Status destroyIOProc(AudioObjectID device, IOProcID proc) = 0;
    virtual Status startDevice(AudioObjectID device, IOProcID proc) = 0;
    /// When this returns, the callback is not running and will not run until started again.
    virtual Status stopDevice(AudioObjectID device, IOProcID proc) = 0;
};

} // namespace velmora
