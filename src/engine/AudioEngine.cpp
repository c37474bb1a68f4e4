#include "engine/AudioEngine.h"

#include "capture/LastingKey.h"
#include "capture/SourceCapture.h"
#include "effects/EffectsChain.h"
#include "engine/realtime/ParamBox.h"

#include <algorithm>
#include <utility>

namespace velmora {

AudioEngine::AudioEngine(const Platform& platform)
    : platform_(platform), settings_(platform.defaults), keeper_(platform, mixSettings_, audience_),
      // The first observer of its own: those that follow find the audience at rest.
      ownConnection_(changed_.connect([this] {
          if (!isRunning()) {
              audience_.rest();
          }
      })),
      tickConnection_(keeper_.ticked().connect([this] { audience_.tick(level() > 0.0F); })),
      keeperConnection_(keeper_.changed().connect([this] { notify(); })),
      levelsConnection_(keeper_.levelsMoved().connect([this] { changed_.emit(); })),
      audienceConnection_(audience_.changed().connect([this] { notify(); })),
      deviceConnection_(
          platform.devices.changed().connect([this] { kept_.forgetEnded(sources_); })) {
    // What earlier runs have kept, once the program is up.
    platform.mainQueue.post([weak = std::weak_ptr(self_)] {
        if (const auto self = weak.lock()) {
            (*self)->kept_.forgetEnded((*self)->sources_);
        }
    });
}

// Every operation below tells the observers last, when it is complete: they may call back.

void AudioEngine::notify() const {
    changed_.emit();
    changedBesidesLevels_.emit();
}

void AudioEngine::notifyIf(bool somethingChanged) const {
    if (somethingChanged) {
        notify();
    }
}

std::vector<Problem> AudioEngine::problems() const {
    std::vector<Problem> all = recallProblems_;
    all.insert(all.end(), launchProblems_.begin(), launchProblems_.end());
    if (keeper_.isServiceAway()) {
        all.push_back({.kind = Problem::Kind::serviceAway});
    } else {
        all.insert(all.end(), keeper_.problems().begin(), keeper_.problems().end());
    }
    if (!sources_.empty()) {
        std::erase_if(all, [](const Problem& one) { return one.kind == Problem::Kind::noSource; });
    }
    return all;
}

std::optional<std::string> AudioEngine::lastError() const {
    const auto all = problems();
    if (all.empty()) {
        return std::nullopt;
    }
    return sentences(all, [](std::string_view french) { return std::string(french); });
}

std::vector<Problem>& AudioEngine::told(ProblemOrigin origin) {
    return origin == ProblemOrigin::recall ? recallProblems_ : launchProblems_;
}

void AudioEngine::tell(ProblemOrigin origin, std::vector<Problem> problems) {
    const bool differs = problems != told(origin);
    told(origin) = std::move(problems);
    notifyIf(differs);
}

void AudioEngine::tellMore(ProblemOrigin origin, const Problem& problem) {
    auto& known = told(origin);
    const bool isNew = std::ranges::find(known, problem) == known.end();
    if (isNew) {
        known.push_back(problem);
    }
    notifyIf(isNew);
}

void AudioEngine::dismissProblems() {
    const bool differs = canDismissProblems();
    recallProblems_.clear();
    launchProblems_.clear();
    keeper_.dismissProblems();
    notifyIf(differs);
}

bool AudioEngine::canDismissProblems() const {
    return !recallProblems_.empty() || !launchProblems_.empty() ||
           (!isRunning() && !keeper_.problems().empty());
}

void AudioEngine::forgetJoined(const std::vector<AudioSource>& before) {
    std::vector<std::string> joined;
    if (!recallProblems_.empty() || !launchProblems_.empty()) {
        for (const AudioSource& source : sources()) {
            if (std::ranges::find(before, source) == before.end()) {
                joined.push_back(lastingKey(platform_.devices, source));
            }
        }
    }
    const auto hasJoined = [&](const Problem& problem) {
        return !problem.key.empty() && std::ranges::find(joined, problem.key) != joined.end();
    };
    std::erase_if(recallProblems_, hasJoined);
    std::erase_if(launchProblems_, hasJoined);
}

void AudioEngine::setFxBypassed(bool bypassed) {
    const bool differs = std::exchange(mixSettings_.fxBypassed, bypassed) != bypassed;
    if (RunningMix* const mix = keeper_.mix()) {
        mix->followBypass();
    }
    notifyIf(differs);
}

void AudioEngine::setMicrophoneClosed(bool closed) {
    const bool differs = std::exchange(mixSettings_.isMicrophoneClosed, closed) != closed;
    if (RunningMix* const mix = keeper_.mix()) {
        mix->followMicrophone();
    }
    notifyIf(differs);
}

void AudioEngine::setHeadphoneVolume(float volume) {
    const bool differs = volume != headphoneVolume();
    if (RunningMix* const mix = keeper_.mix()) {
        mix->setHeadphoneVolume(volume);
    }
    settings_.setHeadphoneVolume(volume);
    notifyIf(differs);
}

void AudioEngine::setStreamVolume(float volume) {
    const bool differs = volume != streamVolume();
    if (RunningMix* const mix = keeper_.mix()) {
        mix->setStreamVolume(volume);
    }
    settings_.setStreamVolume(volume);
    notifyIf(differs);
}

void AudioEngine::setMonitoringSelection(std::optional<std::string> selection) {
    const bool differs = selection != monitoringSelection();
    settings_.setMonitoringSelection(std::move(selection));
    const Status before = status();
    if (isRunning()) {
        keeper_.moveMonitor();
    }
    notifyIf(differs || status() != before);
}

float AudioEngine::gain(const AudioSource& source) const {
    return storedGain(source).value_or(1.0F);
}

std::optional<float> AudioEngine::storedGain(const AudioSource& source) const {
    return settings_.gain(source.id());
}

void AudioEngine::setGain(float gain, const AudioSource& source) {
    const bool differs = storedGain(source) != gain;
    if (const SourceCapture* capture = captureOf(source)) {
        capture->boxes().gain->set(gain);
    }
    settings_.setGain(source.id(), gain);
    kept_.keepTie(source);
    notifyIf(differs);
}

Binding<float> AudioEngine::gainBinding(const AudioSource& source) {
    return {.get = [this, source] { return gain(source); },
            .set = [this, source](const float& value) { setGain(value, source); }};
}

bool AudioEngine::isDirectMuted(const AudioSource& source) const {
    return settings_.muteDirect(source.id()).value_or(false);
}

void AudioEngine::setDirectMuted(bool muted, const AudioSource& source) {
    const bool differs = settings_.muteDirect(source.id()) != muted;
    settings_.setMuteDirect(source.id(), muted);
    kept_.keepTie(source);
    keeper_.setMuteDirect(source, muted);
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
    return settings_.fxOf(source.id());
}

void AudioEngine::setFX(const FXParams& params, const AudioSource& source) {
    const bool differs = fx(source) != params;
    if (const SourceCapture* capture = captureOf(source)) {
        capture->boxes().fx->setParams(params);
    }
    settings_.setFX(source.id(), params);
    kept_.keepTie(source);
    notifyIf(differs);
}

Binding<FXParams> AudioEngine::fxBinding(const AudioSource& source) {
    return {.get = [this, source] { return fx(source); },
            .set = [this, source](const FXParams& value) { setFX(value, source); }};
}

bool AudioEngine::anyFXActive() const {
    return std::ranges::any_of(sources(),
                               [&](const AudioSource& source) { return !fx(source).isNeutral(); });
}

SourceCapture* AudioEngine::captureOf(const AudioSource& source) const {
    const RunningMix* const mix = keeper_.mix();
    return mix == nullptr ? nullptr : mix->captureOf(source);
}

bool AudioEngine::isCaptured(const AudioSource& source) const {
    const RunningMix* const mix = keeper_.mix();
    return mix != nullptr && std::ranges::any_of(mix->captures(), [&](const auto& capture) {
               return capture->source() == source;
           });
}

void AudioEngine::add(const AudioSource& source) {
    const bool isAnother = kept_.meet(source);
    auto list = sources();
    const bool isNew = std::ranges::find(list, source) == list.end();
    if (isNew) {
        list.push_back(source);
    }
    if (isNew || isAnother) {
        editList(std::move(list), isAnother);
    }
}

void AudioEngine::remove(const AudioSource& source) {
    auto list = sources();
    std::erase(list, source);
    editList(std::move(list));
}

void AudioEngine::setPrimary(const AudioSource& source) {
    const bool isAnother = kept_.meet(source);
    if (isAnother || sources().empty() || sources().front() != source) {
        auto list = sources();
        list.erase(list.begin(), list.begin() + (list.empty() ? 0 : 1));
        list.insert(list.begin(), source);
        editList(std::move(list), isAnother);
    }
}

void AudioEngine::replace(const AudioSource& source, const AudioSource& successor) {
    auto list = sources();
    if (source == successor || std::ranges::find(list, source) == list.end()) {
        return;
    }
    const bool isAnother = kept_.meet(successor);
    settings_.copy(source.id(), successor.id());
    kept_.keepTie(successor);
    std::ranges::replace(list, AudioSource(source), AudioSource(successor));
    editList(std::move(list), isAnother);
}

void AudioEngine::editList(std::vector<AudioSource> list, bool isAnother) {
    const Status before = status();
    const bool differs = isAnother || list != sources();
    const auto earlier = std::exchange(sources_, std::move(list));
    forgetJoined(earlier);
    if (isRunning() && sources().empty()) {
        keeper_.end();
    } else if (isRunning()) {
        keeper_.begin(sources_);
    }
    notifyIf(differs || status() != before);
}

void AudioEngine::replaceSources(std::vector<AudioSource> list) {
    for (const AudioSource& source : list) {
        kept_.meet(source);
    }
    const bool differs = list != sources();
    const auto earlier = std::exchange(sources_, std::move(list));
    forgetJoined(earlier);
    notifyIf(differs);
}

void AudioEngine::insertSource(const AudioSource& source, std::size_t index) {
    kept_.meet(source);
    const auto place = std::min(index, sources().size());
    const auto earlier = sources_;
    sources_.insert(sources_.begin() + static_cast<std::ptrdiff_t>(place), source);
    forgetJoined(earlier);
    notifyIf(true);
}

void AudioEngine::start() {
    const Status before = status();
    keeper_.begin(sources_);
    notifyIf(status() != before);
}

void AudioEngine::restart() {
    const Status before = status();
    keeper_.beginAgain(sources_);
    notifyIf(status() != before);
}

void AudioEngine::stop() {
    const Status before = status();
    const bool hadLevels = level() != 0.0F || !sourceLevels().empty();
    keeper_.end();
    notifyIf(hadLevels || status() != before);
}

std::vector<SourceStatistics> AudioEngine::statistics() const {
    const RunningMix* const mix = keeper_.mix();
    return mix == nullptr ? std::vector<SourceStatistics>{} : mix->statistics();
}

void AudioEngine::restartBacklogRanges() {
    if (RunningMix* const mix = keeper_.mix()) {
        mix->restartBacklogRanges();
    }
}

} // namespace velmora
