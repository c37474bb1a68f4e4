// The operations that edit a mix; starting and stopping are in AudioEngineLifecycle.cpp, and coming
// back after a loss in AudioEngineRecovery.cpp.
#include "engine/AudioEngine.h"

#include "capture/SourceCapture.h"
#include "effects/EffectsChain.h"
#include "engine/VelmoraError.h"
#include "engine/realtime/ParamBox.h"

#include <algorithm>
#include <utility>

namespace velmora {
namespace {

template <typename T>
std::optional<T> valueOf(const std::map<std::string, T>& map, const std::string& id) {
    const auto found = map.find(id);
    return found == map.end() ? std::nullopt : std::optional(found->second);
}

} // namespace

// Every operation below tells the observers last, when it is complete: they may call back.

void AudioEngine::notifyIf(bool somethingChanged) const {
    if (somethingChanged) {
        changed_.emit();
    }
}

void AudioEngine::setLastError(std::optional<std::string> message) {
    const bool differs = message != status_.lastError;
    status_.lastError = std::move(message);
    notifyIf(differs);
}

void AudioEngine::setFxBypassed(bool bypassed) {
    const bool differs = std::exchange(fxBypassed_, bypassed) != bypassed;
    for (const auto& capture : captures_) {
        capture->boxes().fx->setBypass(bypassed);
    }
    notifyIf(differs);
}

void AudioEngine::setHeadphoneVolume(float volume) {
    const bool differs = volume != headphoneVolume();
    monitor_.setVolume(volume);
    settings_.setHeadphoneVolume(volume);
    notifyIf(differs);
}

void AudioEngine::setStreamVolume(float volume) {
    const bool differs = volume != streamVolume();
    stream_.setVolume(volume);
    settings_.setStreamVolume(volume);
    notifyIf(differs);
}

void AudioEngine::setMonitoringSelection(std::optional<std::string> selection) {
    const bool differs = selection != monitoringSelection();
    settings_.setMonitoringSelection(std::move(selection));
    if (recovery_) {
        recovery_->monitorBefore.reset();
    }
    if (isRunning()) {
        restartMonitor();
    }
    notifyIf(differs);
}

float AudioEngine::gain(const AudioSource& source) const {
    return storedGain(source).value_or(1.0F);
}

std::optional<float> AudioEngine::storedGain(const AudioSource& source) const {
    return valueOf(settings_.gains(), source.id());
}

void AudioEngine::setGain(float gain, const AudioSource& source) {
    const bool differs = storedGain(source) != gain;
    if (const SourceCapture* capture = captureOf(source)) {
        capture->boxes().gain->set(gain);
    }
    settings_.setGain(source.id(), gain);
    notifyIf(differs);
}

Binding<float> AudioEngine::gainBinding(const AudioSource& source) {
    return {.get = [this, source] { return gain(source); },
            .set = [this, source](const float& value) { setGain(value, source); }};
}

bool AudioEngine::isDirectMuted(const AudioSource& source) const {
    return valueOf(settings_.muteDirect(), source.id()).value_or(false);
}

void AudioEngine::setDirectMuted(bool muted, const AudioSource& source) {
    const bool differs = valueOf(settings_.muteDirect(), source.id()) != muted;
    settings_.setMuteDirect(source.id(), muted);
    if (SourceCapture* capture = captureOf(source)) {
        capture->setMuteDirect(muted);
        try {
            capture->start();
        } catch (const VelmoraError&) {
            // Deliberate: the source stays silent, and the next full start reports it.
        }
    }
    notifyIf(differs);
}

Binding<bool> AudioEngine::muteDirectBinding(const AudioSource& source) {
    return {.get = [this, source] { return isDirectMuted(source); },
            .set = [this, source](const bool& value) { setDirectMuted(value, source); }};
}

FXParams AudioEngine::fx(const AudioSource& source) const {
    return storedFX(source).value_or(FXParams{});
}

std::optional<FXParams> AudioEngine::storedFX(const AudioSource& source) const {
    return valueOf(settings_.fx(), source.id());
}

void AudioEngine::setFX(const FXParams& params, const AudioSource& source) {
    const bool differs = fx(source) != params;
    if (const SourceCapture* capture = captureOf(source)) {
        capture->boxes().fx->setParams(params);
    }
    settings_.setFX(source.id(), params);
    notifyIf(differs);
}

Binding<FXParams> AudioEngine::fxBinding(const AudioSource& source) {
    return {.get = [this, source] { return fx(source); },
            .set = [this, source](const FXParams& value) { setFX(value, source); }};
}

bool AudioEngine::anyFXActive() const {
    return std::ranges::any_of(sources_,
                               [&](const AudioSource& source) { return !fx(source).isNeutral(); });
}

SourceCapture* AudioEngine::captureOf(const AudioSource& source) const {
    const std::string id = source.id();
    const auto found = std::ranges::find_if(
        captures_, [&](const auto& capture) { return capture->source().id() == id; });
    return found == captures_.end() ? nullptr : found->get();
}

void AudioEngine::add(const AudioSource& source) {
    if (std::ranges::find(sources_, source) != sources_.end()) {
        return;
    }
    sources_.push_back(source);
    restartIfRunning();
    notifyIf(true);
}

void AudioEngine::remove(const AudioSource& source) {
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): may be an element of the list
    const AudioSource removed = source;
    const Status before = status_;
    const bool differs = std::erase(sources_, removed) > 0;
    restartIfRunning();
    notifyIf(differs || status_ != before);
}

void AudioEngine::setPrimary(const AudioSource& source) {
    if (!sources_.empty() && sources_.front() == source) {
        return;
    }
    if (sources_.empty()) {
        sources_.push_back(source);
    } else {
        sources_.front() = source;
    }
    restartIfRunning();
    notifyIf(true);
}

void AudioEngine::replaceSources(std::vector<AudioSource> sources) {
    const bool differs = sources != sources_;
    sources_ = std::move(sources);
    notifyIf(differs);
}

void AudioEngine::insertSource(const AudioSource& source, std::size_t index) {
    const auto place = std::min(index, sources_.size());
    sources_.insert(sources_.begin() + static_cast<std::ptrdiff_t>(place), source);
    notifyIf(true);
}

std::vector<SourceStatistics> AudioEngine::statistics() const {
    std::vector<SourceStatistics> statistics;
    for (const auto& capture : captures_) {
        statistics.push_back({.source = capture->source(),
                              .stream = capture->boxes().streamRing->statistics(),
                              .monitor = capture->boxes().monitorRing->statistics()});
    }
    return statistics;
}

void AudioEngine::restartBacklogRanges() {
    for (const auto& capture : captures_) {
        capture->boxes().streamRing->resetStatistics();
        capture->boxes().monitorRing->resetStatistics();
    }
}

} // namespace velmora
