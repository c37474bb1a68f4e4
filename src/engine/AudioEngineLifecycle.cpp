// How a mix comes up, is rebuilt and goes down; the operations that edit it are in AudioEngine.cpp.
#include "engine/AudioEngine.h"

#include "capture/DeviceQueries.h"
#include "capture/SourceCapture.h"
#include "effects/EffectsChain.h"
#include "engine/MonitoringChoice.h"
#include "engine/VelmoraError.h"
#include "engine/realtime/LevelMeter.h"
#include "engine/realtime/ParamBox.h"
#include "engine/realtime/RingBuffer.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace velmora {
namespace {

constexpr std::int64_t ringFloats = 192000; // two seconds of stereo at 48 kHz
constexpr std::chrono::milliseconds deviceChangeDebounce{500};
constexpr std::chrono::nanoseconds meterPeriod =
    std::chrono::nanoseconds(std::chrono::seconds{1}) / 30;

} // namespace

AudioEngine::AudioEngine(const Platform& platform)
    : platform_(platform), settings_(platform.defaults), stream_(settings_.streamVolume()),
      monitor_(settings_.headphoneVolume()) {
    listenToDevices();
}

AudioEngine::~AudioEngine() {
    stopInternals();
}

void AudioEngine::listenToDevices() {
    defaultOutputConnection_ =
        platform_.devices.defaultOutputChanged().connect([this] { onDefaultOutputChange(); });
    devicesConnection_ = platform_.devices.changed().connect([this] { onDevicesChange(); });
    if (!platform_.devices.isAvailable()) {
        onDevicesChange();
    }
}

void AudioEngine::onDefaultOutputChange() {
    if (recovery_) {
        recovery_->awaitsDefaultOutput = false;
        recoverAndTell();
    } else if (isRunning()) {
        scheduleRestart();
    }
}

void AudioEngine::scheduleRestart() {
    // Replacing the pending one: several changes in a row cause one restart.
    restartTimer_ = platform_.mainQueue.after(deviceChangeDebounce, [this] {
        if (isRunning() && !recovery_) {
            const Status before = status_;
            // The device that went may be a source's as well, and come back.
            rebuild(NoSource::isWaitedFor);
            notifyIf(status_ != before);
        }
    });
}

void AudioEngine::start() {
    const Status before = status_;
    rebuild(NoSource::endsTheMix);
    notifyIf(status_ != before);
}

void AudioEngine::stop() {
    notifyIf(halt());
}

/// Returns whether a published value changed.
bool AudioEngine::halt() {
    const bool differs = isRunning() || level() != 0.0F || !sourceLevels().empty();
    stopInternals();
    endRecovery();
    status_.isRunning = false;
    meters_.clear();
    return differs;
}

void AudioEngine::restartIfRunning() {
    if (isRunning() && sources_.empty()) {
        halt();
    } else if (isRunning()) {
        rebuild(NoSource::endsTheMix);
    }
}

void AudioEngine::rebuild(NoSource noSource) {
    if (sources_.empty()) {
        status_.lastError = "Choisir d'abord une source";
        return;
    }
    if (recovery_) {
        recovery_->hasOutputs = false; // everything anew, with the list as it is now
        recover();
        return;
    }
    if (!platform_.devices.isAvailable()) {
        awaitService();
        return;
    }
    stopInternals();
    status_ = {};
    try {
        // The outputs come first and get their rings last: they play silence until then.
        openStream();
        openMonitor();
        status_.lastError = startMissingCaptures();
        if (captures_.empty() && noSource == NoSource::endsTheMix) {
            throw VelmoraError::engine(*std::move(status_.lastError));
        }
        startMeterTimer();
        status_.isRunning = true;
        if (status_.lastError && noSource == NoSource::isWaitedFor) {
            awaitMissingSources();
        }
    } catch (const std::exception& error) {
        status_.lastError = error.what();
        stopInternals();
    }
}

void AudioEngine::openStream() {
    const auto device = findVirtualMicDevice(platform_.devices);
    if (!device) {
        throw VelmoraError::noVirtualMic();
    }
    stream_.open(platform_.devices, platform_.units, {.device = *device, .firstChannel = 1});
}

std::optional<OutputTarget> AudioEngine::monitoringTarget() const {
    return resolveMonitoringDevice(platform_.devices, monitoringSelection());
}

void AudioEngine::openMonitor() {
    const auto target = monitoringTarget();
    if (!target) {
        return;
    }
    try {
        monitor_.open(platform_.devices, platform_.units, *target);
    } catch (const VelmoraError&) {
        // Deliberate: without a monitoring output the stream still runs.
    }
}

/// Starts what can be started and is not running. Returns one line for each source that failed.
std::optional<std::string> AudioEngine::startMissingCaptures() {
    const std::size_t present = captures_.size();
    std::string failures;
    for (const AudioSource& source : missingSources()) {
        auto capture = makeCapture(source);
        try {
            capture->start();
            captures_.push_back(std::move(capture));
        } catch (const std::exception& error) {
            failures += (failures.empty() ? "" : "\n") + source.name() + " : " + error.what();
        }
    }
    if (captures_.size() > present) {
        // What came in while later sources were starting would stay in the rings as delay for good.
        for (std::size_t at = present; at < captures_.size(); ++at) {
            captures_[at]->boxes().streamRing->clear();
            captures_[at]->boxes().monitorRing->clear();
        }
        publishRings();
    }
    return failures.empty() ? std::nullopt : std::optional(std::move(failures));
}

/// The list without what is running. A source may be in it twice.
std::vector<AudioSource> AudioEngine::missingSources() const {
    std::vector<AudioSource> missing = sources_;
    for (const auto& capture : captures_) {
        if (const auto found = std::ranges::find(missing, capture->source());
            found != missing.end()) {
            missing.erase(found);
        }
    }
    return missing;
}

std::unique_ptr<SourceCapture> AudioEngine::makeCapture(const AudioSource& source) const {
    CaptureBoxes boxes{.streamRing = std::make_shared<RingBuffer>(ringFloats),
                       .monitorRing = std::make_shared<RingBuffer>(ringFloats),
                       .gain = std::make_shared<ParamBox>(gain(source)),
                       .fx = std::make_shared<EffectsChain>(fx(source)),
                       .meter = std::make_shared<LevelMeter>()};
    boxes.fx->setBypass(fxBypassed_);
    return std::make_unique<SourceCapture>(
        platform_, source, std::move(boxes), isDirectMuted(source));
}

void AudioEngine::publishRings() {
    std::vector<std::shared_ptr<RingBuffer>> streamRings;
    std::vector<std::shared_ptr<RingBuffer>> monitorRings;
    for (const auto& capture : captures_) {
        streamRings.push_back(capture->boxes().streamRing);
        monitorRings.push_back(capture->boxes().monitorRing);
    }
    stream_.setRings(std::move(streamRings));
    monitor_.setRings(std::move(monitorRings));
}

void AudioEngine::startMeterTimer() {
    meterTimer_ =
        platform_.mainQueue.every(meterPeriod, [this] { notifyIf(meters_.tick(captures_)); });
}

void AudioEngine::stopInternals() {
    meterTimer_.reset();
    for (const auto& capture : captures_) {
        capture->stop();
    }
    captures_.clear();
    stream_.setRings({});
    monitor_.setRings({});
    stream_.close();
    monitor_.close();
}

void AudioEngine::restartMonitor() {
    monitor_.close();
    openMonitor();
}

} // namespace velmora
