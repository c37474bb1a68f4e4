#include "engine/RunningMix.h"

#include "capture/DeviceQueries.h"
#include "capture/SourceCapture.h"
#include "effects/EffectsChain.h"
#include "engine/EngineSettings.h"
#include "engine/VelmoraError.h"
#include "engine/realtime/LevelMeter.h"
#include "engine/realtime/ParamBox.h"
#include "engine/realtime/RingBuffer.h"

#include <algorithm>
#include <utility>

namespace velmora {
namespace {

constexpr std::int64_t ringFloats = 192000; // two seconds of stereo at 48 kHz

using Captures = std::vector<std::unique_ptr<SourceCapture>>;

/// Takes the capture of exactly this source out of `captures`; null when there is none.
std::unique_ptr<SourceCapture> takeOut(Captures& captures, const AudioSource& source) {
    const auto found = std::ranges::find_if(
        captures, [&](const auto& capture) { return capture->source() == source; });
    if (found == captures.end()) {
        return nullptr;
    }
    auto taken = std::move(*found);
    captures.erase(found);
    return taken;
}

} // namespace

RunningMix::RunningMix(const Platform& platform, const MixSettings& settings)
    : platform_(platform), settings_(settings),
      defaultOutput_(platform.devices.defaultOutputDevice()), stream_(settings.kept.streamVolume()),
      monitor_(settings.kept.headphoneVolume()) {
    const auto microphone = findMixMicrophone(platform.devices);
    if (!microphone) {
        throw VelmoraError::noVirtualMic();
    }
    followMicrophone();
    stream_.open(platform.devices, platform.units, {.device = *microphone, .firstChannel = 1});
    rateHz_ = stream_.sampleRate();
}

RunningMix::~RunningMix() {
    for (const auto& capture : captures_) {
        capture->stop();
    }
    captures_.clear();
    publishRings();
    stream_.close();
    monitor_.close();
}

bool RunningMix::isAlive() const {
    return stream_.isAlive() && monitor_.isAlive() &&
           std::ranges::all_of(captures_, [](const auto& capture) { return capture->isAlive(); });
}

bool RunningMix::isUpToDate() const {
    const double rateHz = stream_.sampleRate();
    if (rateHz > 0.0 && rateHz != rateHz_) {
        return false;
    }
    const AudioObjectID device = stream_.target()->device;
    const auto microphone = findMixMicrophone(platform_.devices);
    return !microphone || *microphone == device || deviceName(platform_.devices, device);
}

void RunningMix::takeDefaultOutput() {
    if (!defaultOutput_) {
        defaultOutput_ = platform_.devices.defaultOutputDevice();
    }
}

std::optional<Problem> RunningMix::moveMonitor(const std::optional<OutputTarget>& target) {
    monitor_.close();
    if (!target) {
        return std::nullopt;
    }
    try {
        monitor_.open(platform_.devices, platform_.units, *target);
        return std::nullopt;
    } catch (const std::exception& error) {
        return problemOf(error);
    }
}

std::vector<Problem> RunningMix::takeSources(const std::vector<AudioSource>& sources) {
    Captures known = std::exchange(captures_, {});
    std::vector<SourceCapture*> fresh;
    std::vector<Problem> problems;
    for (const AudioSource& source : sources) {
        auto capture = takeOut(known, source);
        if (!capture || !capture->isUpToDate()) {
            capture.reset(); // before the next one opens the same device
            capture = makeCapture(source);
            try {
                startCapture(*capture);
                fresh.push_back(capture.get());
            } catch (const std::exception& error) {
                problems.push_back(problemOf(error));
                problems.back().subject = source.name();
                continue;
            }
        }
        captures_.push_back(std::move(capture));
    }
    // What came in while later sources were starting would stay in the rings as delay for good.
    for (const SourceCapture* capture : fresh) {
        capture->boxes().streamRing->clear();
        capture->boxes().monitorRing->clear();
    }
    if (!fresh.empty() || !known.empty()) {
        publishRings();
    }
    return problems;
}

void RunningMix::dropAllBut(const std::vector<AudioSource>& sources) {
    Captures known = std::exchange(captures_, {});
    for (const AudioSource& source : sources) {
        if (auto capture = takeOut(known, source)) {
            captures_.push_back(std::move(capture));
        }
    }
    publishRings();
}

bool RunningMix::setMuteDirect(const AudioSource& source, bool muted) {
    const std::string id = source.id();
    const auto isRefused = [&](const std::unique_ptr<SourceCapture>& capture) {
        if (capture->source().id() != id) {
            return false;
        }
        capture->setMuteDirect(muted);
        try {
            startCapture(*capture);
            return false;
        } catch (const std::exception&) {
            return true;
        }
    };
    const bool isWhole = std::erase_if(captures_, isRefused) == 0;
    if (!isWhole) {
        publishRings();
    }
    return isWhole;
}

SourceCapture* RunningMix::captureOf(const AudioSource& source) const {
    const std::string id = source.id();
    const auto found = std::ranges::find_if(
        captures_, [&](const auto& capture) { return capture->source().id() == id; });
    return found == captures_.end() ? nullptr : found->get();
}

void RunningMix::followBypass() {
    for (const auto& capture : captures_) {
        capture->boxes().fx->setBypass(settings_.fxBypassed);
    }
}

void RunningMix::followMicrophone() {
    stream_.setOpen(!settings_.isMicrophoneClosed);
}

void RunningMix::startCapture(SourceCapture& capture) const {
    if (settings_.isAnothers && settings_.isAnothers(capture.source())) {
        throw VelmoraError({.kind = Problem::Kind::noSoundYet});
    }
    capture.start();
}

std::unique_ptr<SourceCapture> RunningMix::makeCapture(const AudioSource& source) const {
    const std::string id = source.id();
    const EngineSettings& kept = settings_.kept;
    CaptureBoxes boxes{.streamRing = std::make_shared<RingBuffer>(ringFloats),
                       .monitorRing = std::make_shared<RingBuffer>(ringFloats),
                       .gain = std::make_shared<ParamBox>(kept.gain(id).value_or(1.0F)),
                       .fx = std::make_shared<EffectsChain>(kept.fxOf(id).value_or(FXParams{})),
                       .meter = std::make_shared<LevelMeter>()};
    boxes.fx->setBypass(settings_.fxBypassed);
    return std::make_unique<SourceCapture>(
        platform_, source, std::move(boxes), kept.muteDirect(id).value_or(false));
}

void RunningMix::publishRings() {
    std::vector<std::shared_ptr<RingBuffer>> streamRings;
    std::vector<std::shared_ptr<RingBuffer>> monitorRings;
    for (const auto& capture : captures_) {
        streamRings.push_back(capture->boxes().streamRing);
        monitorRings.push_back(capture->boxes().monitorRing);
    }
    stream_.setRings(std::move(streamRings));
    monitor_.setRings(std::move(monitorRings));
}

std::vector<SourceStatistics> RunningMix::statistics() const {
    std::vector<SourceStatistics> statistics;
    for (const auto& capture : captures_) {
        statistics.push_back({.source = capture->source(),
                              .stream = capture->boxes().streamRing->statistics(),
                              .monitor = capture->boxes().monitorRing->statistics()});
    }
    return statistics;
}

void RunningMix::restartBacklogRanges() {
    for (const auto& capture : captures_) {
        capture->boxes().streamRing->resetStatistics();
        capture->boxes().monitorRing->resetStatistics();
    }
}

} // namespace velmora
