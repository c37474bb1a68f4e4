#include "platform/contract/ApplicationTapsContract.h"
#include "platform/contract/AudioDevicesContract.h"
#include "platform/contract/AudioUnitsContract.h"
#include "platform/simulated/SimulatedPlatform.h"

#include <chrono>
#include <map>

namespace velmora {

class SimulatedAudioRig {
public:
    AudioDevices& devices() { return machine_.devices; }
    ApplicationTaps& taps() { return machine_.taps; }
    PublicSinks& sinks() { return machine_.sinks; }
    AudioUnits& units() { return machine_.units; }

    void makeDevice(const ContractDevice& device) {
        SimulatedDevice made{.uid = device.uid, .name = device.name};
        if (device.outputs > 0) {
            made.outputs = {device.outputs};
        }
        if (device.inputs > 0) {
            made.inputs = {device.inputs};
            made.transport = Transport::virtualDevice;
        }
        ids_[device.uid] = machine_.sound.addDevice(made);
    }
    void removeDevice(const std::string& uid) { machine_.sound.removeDevice(ids_.at(uid)); }
    void makeDefault(const std::string& uid) { machine_.sound.setDefaultOutput(ids_.at(uid)); }

    void loseService() {
        machine_.sound.loseService();
        for (const auto& [uid, id] : ids_) {
            machine_.sound.removeDevice(id);
        }
        ids_.clear();
    }
    void returnService() { machine_.sound.returnService(); }

    std::int32_t playTone(const std::string& name, double hz, double db) {
        const std::int32_t pid = ++lastPid_;
        machine_.startApplication(pid, name, "contract." + name);
        machine_.sound.play(pid, sine(hz, static_cast<float>(support::fromDb(db))));
        return pid;
    }
    void record(std::int32_t pid, const std::string& uid) {
        machine_.sound.record(pid, ids_.at(uid));
    }
    void measure(std::int32_t pid, const std::string& uid) {
        machine_.sound.measure(pid, ids_.at(uid));
    }
    void stopRecording(std::int32_t pid) { machine_.sound.stopRecording(pid); }
    void turnTo(const std::string& uid, const DeviceVolume& volume) {
        machine_.sound.setVolume(ids_.at(uid), volume);
    }
    void feed(const std::string& uid, std::size_t channel, double hz, double db) {
        const Waveform tone = sine(hz, static_cast<float>(support::fromDb(db)));
        machine_.sound.setInput(ids_.at(uid), [=](std::int64_t frame, std::size_t index) {
            return index + 1 == channel ? tone(frame, index) : 0.0F;
        });
    }
    std::vector<float> listen(const std::string& uid, std::size_t channel, std::size_t frames) {
        machine_.sound.forgetHeard();
        machine_.advanceFrames(static_cast<std::int64_t>(frames));
        return machine_.sound.heard(ids_.at(uid), channel);
    }
    bool wait(const std::function<bool()>& condition) {
        constexpr int mostSteps = 500;
        for (int step = 0; step < mostSteps && !condition(); ++step) {
            machine_.advance(std::chrono::milliseconds{10});
        }
        return condition();
    }

private:
    SimulatedPlatform machine_;
    std::map<std::string, AudioObjectID> ids_;
    std::int32_t lastPid_ = 100;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, ApplicationTapsContract, SimulatedAudioRig);
INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, AudioDevicesContract, SimulatedAudioRig);
INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, AudioUnitsContract, SimulatedAudioRig);

} // namespace velmora
