// AudioDevices.h: the audio service and the devices that it offers.
#pragma once

#include "platform/Signal.h"
#include "platform/Status.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// A device or the process object of an application. 0 = none.
using AudioObjectID = std::uint32_t;

/// The virtual microphone's name contains this, in any case.
inline constexpr std::string_view virtualMicrophoneWord = "velmora";

enum class Scope { input, output };
enum class Transport { other, virtualDevice, aggregate };

/// Who records from a device at this moment. Level meters, as the applets of mixers have them, are
/// nobody, and neither is this program.
struct Recorders {
    bool areAny{};
    /// Those of applications that have also played, ascending.
    std::vector<AudioObjectID> processes{};

    bool operator==(const Recorders&) const = default;
};

/// What somebody made of a device in a mixer of the desktop.
struct DeviceVolume {
    float linear{1.0F}; ///< of its loudest channel
    bool isMuted{};

    bool operator==(const DeviceVolume&) const = default;
};

/// Reads give none when the object is gone or does not answer; requests give the status with which
/// they were refused. Threads: main. Real-time: no.
class AudioDevices {
public:
    virtual ~AudioDevices() = default;

    /// False while the service does not answer: every read gives none, every request is refused.
    [[nodiscard]] virtual bool isAvailable() const = 0;

    /// In the system's order; none when the audio service does not answer.
    [[nodiscard]] virtual std::optional<std::vector<AudioObjectID>> devices() const = 0;
    [[nodiscard]] virtual std::optional<std::string> deviceName(AudioObjectID device) const = 0;
    [[nodiscard]] virtual std::optional<std::string> deviceUID(AudioObjectID device) const = 0;
    /// Channel count of each stream in one direction; an empty list when it has none there.
    [[nodiscard]] virtual std::optional<std::vector<std::uint32_t>>
    streamChannels(AudioObjectID device, Scope scope) const = 0;
    [[nodiscard]] virtual std::optional<Transport> transport(AudioObjectID device) const = 0;
    /// A headset, or what stands for its microphone until somebody records from it: doing so costs
    /// the quality of what it plays.
    [[nodiscard]] virtual bool isBluetooth(AudioObjectID device) const = 0;
    [[nodiscard]] virtual std::optional<double> nominalRate(AudioObjectID device) const = 0; ///< Hz
    virtual Status requestBufferFrames(AudioObjectID device, std::uint32_t frames) = 0;
    [[nodiscard]] virtual std::optional<AudioObjectID> defaultOutputDevice() const = 0;
    /// Its changes are told by `changed`.
    [[nodiscard]] virtual std::optional<Recorders> recorders(AudioObjectID device) const = 0;
    /// What those who record from a virtual source get of it; none for every other device. Its
    /// changes are told by `changed`.
    [[nodiscard]] virtual std::optional<DeviceVolume>
    recordingVolume(AudioObjectID device) const = 0;
    virtual Status setRecordingVolume(AudioObjectID device, const DeviceVolume& volume) = 0;

    /// Told on the main queue after the default output device has changed to another one that is
    /// there, and after the audio service came back.
    [[nodiscard]] Signal& defaultOutputChanged() { return defaultOutputChanged_; }

    /// Told on the main queue after anything else has changed on which a mix depends: the service
    /// was lost or answers again; a device came, went or has other channels; an application's
    /// process object came or went; somebody began or ceased to record; a recording
    /// volume was set; something that we opened
    /// died; the rate changed. Several changes in a row may be told once; an observer reads what is
    /// so now.
    [[nodiscard]] Signal& changed() { return changed_; }

private:
    Signal defaultOutputChanged_;
    Signal changed_;
};

} // namespace velmora
