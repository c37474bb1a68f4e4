// SimulatedSound.h: the sound of the simulated machine: devices, players, taps and the cycle.
#pragma once

#include "platform/ApplicationTaps.h"
#include "platform/AudioDevices.h"
#include "platform/AudioUnits.h"
#include "platform/PublicSinks.h"
#include "platform/simulated/Refusals.h"
#include "platform/simulated/SimulatedDevice.h"
#include "platform/simulated/Waveform.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

struct SoundGraph;

/// What a tap hands to its callback.
enum class TapBlocks {
    filled, ///< the application's sound
    empty,  ///< a block of no samples
    null,   ///< a block without data
};

/// A tap as it was asked for.
struct TapRequest {
    AudioObjectID process{};
    ApplicationTaps::Mute mute{};

    bool operator==(const TapRequest&) const = default;
};

/// The machine as a test arranges it and listens to it. The platform interfaces
/// (`SimulatedAudioDevices` and the others) show the same machine to the code under test, and tell
/// it what changes here.
///
/// Each cycle moves one block: applications and input devices produce it, captures run, outputs
/// run, and every output device's channels keep what they played. Captures run in the order in
/// which they were started, before the outputs.
///
/// Threads: any; one lock covers the machine, so cycles may run on one thread while another
/// changes things. Callbacks run under it: "stopped" means that no callback is running.
class SimulatedSound {
public:
    SimulatedSound();
    ~SimulatedSound();

    // -- devices --

    AudioObjectID addDevice(const SimulatedDevice& device);
    void removeDevice(AudioObjectID device);
    /// What an input device records from now on; it is silent until this is called.
    void setInput(AudioObjectID device, Waveform signal);
    /// Its input streams become one of so many channels, as while its channels come one by one.
    void setInputChannels(AudioObjectID device, std::uint32_t channels);
    /// Somebody turns a virtual source down, or mutes it, in another mixer.
    void setVolume(AudioObjectID device, const DeviceVolume& volume);
    /// 0 = there is none.
    void setDefaultOutput(AudioObjectID device);

    // -- the audio service --

    /// Every tap and unit falls silent for good, every application loses its connection. Devices
    /// stay as they are; a test that wants them back later takes them out meanwhile.
    void loseService();
    /// The service does not answer for a while, but what is connected to it goes on.
    void pauseService();
    /// The service answers again; a default output is told as a change. Applications are heard
    /// after their next `play`.
    void returnService();
    /// Every open tap and every started unit dies, as if somebody had removed our node; devices and
    /// applications go on.
    void removeOurNode();

    // -- applications' audio --

    /// The application plays on the default output from now on. Its process object is made when it
    /// has none, and stays when it pauses.
    AudioObjectID play(std::int32_t pid, Waveform signal);
    /// Makes one more process object of the process, silent until it is told to play.
    AudioObjectID addProcess(std::int32_t pid);
    void playProcess(AudioObjectID process, Waveform signal);
    void pause(std::int32_t pid);
    void pauseProcess(AudioObjectID process);
    /// The process disconnects from the audio service: its process objects are gone.
    void endProcess(std::int32_t pid);
    /// A program records from the device, whether it has played or not, until it ceases or ends.
    void record(std::int32_t pid, AudioObjectID device);
    /// It does so only to show how loud the device is.
    void measure(std::int32_t pid, AudioObjectID device);
    void stopRecording(std::int32_t pid);
    /// What is special about an application that has played. It does not change what is heard.
    void setSound(std::int32_t pid, ApplicationSound sound);
    /// `helper` belongs to the application that `pid` leads.
    void addHelper(std::int32_t pid, std::int32_t helper);

    // -- what was heard --

    /// Every sample that the device's channel (1-based) has played since the device came or since
    /// `forgetHeard`: the applications that play on it and the output units, summed.
    [[nodiscard]] std::vector<float> heard(AudioObjectID device, std::size_t channel) const;
    void forgetHeard();

    // -- faults --

    void
    refuse(Operation operation, Status status = Refusals::defaultStatus, AudioObjectID object = 0);
    void allow(Operation operation, AudioObjectID object = 0);
    /// How many requests of this kind were refused so far.
    [[nodiscard]] std::size_t refusalsGiven(Operation operation) const;
    void setTapBlocks(TapBlocks blocks);
    /// True (at the start): a tap's mixdown comes divided as it was asked for, so that a capture
    /// that multiplies again is at unity. False: undivided, and the factor is heard.
    void setMixdownDivided(bool divided);
    /// For the next `cycles` cycles captures run after the outputs: each output misses one block
    /// and has one block more in store afterwards.
    void delayCaptures(std::int64_t cycles);
    /// For the next `cycles` cycles no output runs.
    void skipOutputs(std::int64_t cycles);
    /// For the next `cycles` cycles neither captures nor outputs run, as if the process were
    /// stopped; devices and applications go on. Each of them was missed.
    void standStill(std::int64_t cycles);
    /// From now on the device is faster than the machine's clock by so many millionths. Taps of
    /// applications run with the default output.
    void setClockSkew(AudioObjectID device, double ppm);

    // -- the cycle --

    /// Frames per block, from the next cycle on, whatever units and taps ask for. Before that it is
    /// what they ask for, 128 at the least.
    void setBlockFrames(std::int64_t frames);
    [[nodiscard]] std::int64_t blockFrames() const;
    /// What units and taps ask for at the least.
    [[nodiscard]] std::uint32_t leastBlockFrames() const;
    /// Whether the machine's audio thread goes before other programs. It does at the start.
    void setRealTime(bool isRealTime);
    /// Of cycles, taps and the devices that are there. 48 kHz at the start.
    void setRate(double rateHz);
    /// How long one cycle lasts.
    [[nodiscard]] std::chrono::nanoseconds cyclePeriod() const;
    void runCycle();
    /// Called on the cycle's thread right before and right after each real-time callback.
    void watchCallbacks(std::function<void()> entered, std::function<void()> left);

    // -- what exists, for leak checks --

    struct Census {
        std::size_t taps{};
        std::size_t sinks{}; ///< public ones
        std::size_t units{}; ///< output and input units
        std::size_t runningUnits{};
        std::size_t wrongReleases{}; ///< so far: of something that was not or no longer there

        bool operator==(const Census&) const = default;
    };
    [[nodiscard]] Census census() const;
    /// What was last requested for the device; 0 = nothing yet.
    [[nodiscard]] std::uint32_t requestedBufferFrames(AudioObjectID device) const;
    /// As they were asked for and made, newest last; also those that are gone.
    [[nodiscard]] std::vector<TapRequest> openedTaps() const;
    [[nodiscard]] std::vector<PublicSink> createdSinks() const;
    /// Lets go of both lists; what exists stays.
    void forgetRequests();

private:
    friend class SimulatedApplicationTaps;
    friend class SimulatedAudioDevices;
    friend class SimulatedAudioUnits;
    friend class SimulatedPublicSinks;

    std::shared_ptr<SoundGraph> graph_; // also held by taps and units
};

} // namespace velmora
