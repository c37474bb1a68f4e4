#include "platform/contract/ApplicationTapsContract.h"
#include "platform/contract/AudioDevicesContract.h"
#include "platform/contract/AudioUnitsContract.h"
#include "platform/pipewire/PipeWireAudio.h"
#include "platform/qt/QtMainQueue.h"
#include "support/ClientPrograms.h"
#include "support/PrivateSession.h"
#include "support/Wait.h"

#include <list>
#include <memory>
#include <set>
#include <utility>

namespace velmora {

/// One session for all tests; each has a backend, applications and devices of its own.
class PipeWireAudioRig {
public:
    PipeWireAudioRig() = default;
    ~PipeWireAudioRig() {
        session().startServices(); // what a failed test left dead
        apps_.clear();
        feeders_.clear();
        for (const std::string& uid : devices_) {
            session().remove(uid);
        }
    }
    PipeWireAudioRig(const PipeWireAudioRig&) = delete;
    PipeWireAudioRig& operator=(const PipeWireAudioRig&) = delete;

    AudioDevices& devices() { return audio_.devices(); }
    ApplicationTaps& taps() { return audio_.taps(); }
    PublicSinks& sinks() { return audio_.sinks(); }
    AudioUnits& units() { return audio_.units(); }

    void makeDevice(const ContractDevice& device) {
        std::vector<std::string> positions = {"FL", "FR"};
        if (device.outputs > 2) {
            positions.clear();
            for (std::uint32_t at = 0; at < device.outputs; ++at) {
                positions.push_back("AUX" + std::to_string(at));
            }
        }
        // The session manager links no recorder to a duplex device.
        const std::string recording = device.outputs > 2 ? "Audio/Duplex" : "Audio/Source/Virtual";
        session().add({.name = device.uid,
                       .description = device.name,
                       .mediaClass = device.inputs > 0 ? recording : "Audio/Sink",
                       .positions = positions});
        devices_.insert(device.uid);
    }
    void removeDevice(const std::string& uid) {
        session().remove(uid);
        devices_.erase(uid);
    }
    void makeDefault(const std::string& uid) {
        // The main queue stands still meanwhile, as in a program whose main thread is busy.
        const auto running = std::exchange(support::betweenLooks, [] {});
        session().setDefaultSink(uid);
        support::betweenLooks = running;
    }

    void loseService() {
        apps_.clear();
        feeders_.clear();
        devices_.clear();
        session().killDaemon();
    }
    static void returnService() { session().startServices(); }

    std::int32_t playTone(const std::string&, double hz, double db) {
        const auto& app = apps_.emplace_back(session());
        app.play("tone", hz, hz, db);
        return app.pid();
    }
    void record(std::int32_t pid, const std::string& uid) { app(pid).hear("ear", uid); }
    void measure(std::int32_t pid, const std::string& uid) { app(pid).measure("ear", uid); }
    void stopRecording(std::int32_t pid) { app(pid).stop("ear"); }
    void turnTo(const std::string& uid, const DeviceVolume& volume) {
        run({"pactl", "set-source-volume", uid, std::to_string(volume.linear)});
        run({"pactl", "set-source-mute", uid, volume.isMuted ? "1" : "0"});
    }
    void feed(const std::string& uid, std::size_t channel, double hz, double db) {
        feeders_.push_back(
            std::make_unique<support::Feeder>(session(),
                                              uid,
                                              std::vector<int>{static_cast<int>(channel)},
                                              support::Tone{.hz = {hz}, .db = db}));
    }
    std::vector<float> listen(const std::string& uid, std::size_t channel, std::size_t frames) {
        const support::Recorder recorder(session(), uid, {static_cast<int>(channel)});
        // The graph takes a moment to settle when a recorder joins it.
        EXPECT_TRUE(support::waitUntil([&] { return recorder.frames() >= 2 * frames; })) << uid;
        const auto sound = recorder.latest(static_cast<double>(frames) / 48000.0);
        return sound.channel(0);
    }
    bool wait(const std::function<bool()>& condition) { return support::waitUntil(condition); }

private:
    static void run(const std::vector<std::string>& command) {
        support::runToEnd(command, session().environment());
    }
    support::ToneApp& app(std::int32_t pid) {
        return *std::ranges::find(apps_, pid, &support::ToneApp::pid);
    }
    static support::PrivateSession& session() {
        static const auto made = [] {
            auto one = std::make_unique<support::PrivateSession>(
                support::PrivateSession::Setup{.patientClock = true});
            one->enter();
            return one;
        }();
        return *made;
    }

    support::PrivateSession& session_ = session(); // before the backend looks for its daemon
    QtMainQueue queue_;
    PipeWireAudio audio_{queue_};
    std::set<std::string> devices_;
    std::list<support::ToneApp> apps_;
    std::list<std::unique_ptr<support::Feeder>> feeders_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(PipeWire, ApplicationTapsContract, PipeWireAudioRig);
INSTANTIATE_TYPED_TEST_SUITE_P(PipeWire, AudioDevicesContract, PipeWireAudioRig);
INSTANTIATE_TYPED_TEST_SUITE_P(PipeWire, AudioUnitsContract, PipeWireAudioRig);

} // namespace velmora
