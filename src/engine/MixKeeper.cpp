#include "engine/MixKeeper.h"

#include "capture/DeviceQueries.h"
#include "capture/SourceCapture.h"
#include "engine/EngineSettings.h"
#include "engine/MonitoringChoice.h"
#include "engine/VelmoraError.h"
#include "platform/AudioDevices.h"

#include <algorithm>
#include <utility>

namespace velmora {
namespace {

using namespace std::chrono_literals;

constexpr auto deviceChangeQuiet = 500ms;
constexpr auto shortestPause = 200ms;
constexpr auto longestPause = 5000ms;
/// Devices and applications come back one by one after the service; until then it would be noise
/// to tell each that is still missing.
constexpr auto settlingTime = 1000ms;
constexpr std::chrono::nanoseconds meterPeriod = std::chrono::nanoseconds(1s) / meterTicksPerSecond;
constexpr std::int64_t ticksOfYouth = meterTicksPerSecond; // one second
/// As often as blocks that were missed may wait to be answered: no wake-ups of its own.
constexpr int ticksPerLook = 8;

} // namespace

MixKeeper::MixKeeper(const Platform& platform,
                     const MixSettings& settings,
                     const Audience& audience)
    : platform_(platform), settings_(settings), audience_(audience), blocks_(platform.units),
      wasAway_(!platform.devices.isAvailable()), pause_(shortestPause, longestPause),
      deviceConnection_(platform.devices.changed().connect([this] { onChange(); })),
      defaultOutputConnection_(
          platform.devices.defaultOutputChanged().connect([this] { onDefaultOutputChange(); })) {
}

MixKeeper::~MixKeeper() = default;

bool MixKeeper::isServiceAway() const {
    return wasAway_ || settling_;
}

MixKeeper::Published MixKeeper::published() const {
    return {.isOn = isOn_,
            .isServiceAway = isServiceAway(),
            .problems = problems_,
            .meters = meters_,
            .isStreamLimited = isStreamLimited(),
            .isMonitorLimited = isMonitorLimited(),
            .blocks = blocks_.status()};
}

/// Does the work and tells observers when it changed something.
template <typename Work>
void MixKeeper::react(Work work) {
    const Published before = published();
    work();
    if (published() != before) {
        changed_.emit();
    }
}

void MixKeeper::onChange() {
    react([this] {
        if (!diedYoung()) {
            pause_.restart(); // something new was seen
        }
        step();
    });
}

void MixKeeper::onDefaultOutputChange() {
    if (!isOn_) {
        return;
    }
    const bool isAnother = mix_ && mix_->defaultOutput() &&
                           mix_->defaultOutput() != platform_.devices.defaultOutputDevice();
    if (!isAnother && !restart_) {
        onChange();
        return;
    }
    // Replacing the pending one: several changes in a row cause one restart.
    restart_ = platform_.mainQueue.after(deviceChangeQuiet, [this] {
        react([this] {
            restart_.reset();
            if (platform_.devices.isAvailable()) {
                drop();
            }
            step();
        });
    });
}

void MixKeeper::begin(std::vector<AudioSource> sources) {
    if (sources.empty()) {
        problems_ = {{.kind = Problem::Kind::noSource}};
        return;
    }
    const bool wasWaiting = isOn_ && (!hasWorkingSource() || isServiceAway());
    isOn_ = true;
    allowFallback();
    anew(std::move(sources));
    if (!wasAway_ && !wasWaiting && !hasWorkingSource()) {
        auto reasons = std::exchange(problems_, {});
        end();
        problems_ = std::move(reasons);
    }
}

void MixKeeper::beginAgain(std::vector<AudioSource> sources) {
    if (isOn_ && !sources.empty()) {
        anew(std::move(sources));
    }
}

void MixKeeper::anew(std::vector<AudioSource> sources) {
    sources_ = std::move(sources);
    pause_.restart();
    restart_.reset();
    settling_.reset();
    if (platform_.devices.isAvailable()) {
        drop();
    } else if (mix_) {
        mix_->dropAllBut(sources_);
    }
    step();
}

void MixKeeper::end() {
    isOn_ = false;
    drop();
    problems_.clear();
    fallback_.reset();
    restart_.reset();
    retry_.reset();
    settling_.reset();
    followLevels();
}

void MixKeeper::dismissProblems() {
    if (!isOn_) {
        problems_.clear();
    }
}

void MixKeeper::moveMonitor() {
    pause_.restart();
    allowFallback();
    if (mix_) {
        mix_->moveMonitor(std::nullopt);
        step();
    }
}

void MixKeeper::setMuteDirect(const AudioSource& source, bool muted) {
    if (mix_ && !mix_->setMuteDirect(source, muted)) {
        followLevels();
        pause_.restart();
        retryLater();
    }
}

/// Something ends our mix again and again: it must not be built without a pause.
bool MixKeeper::diedYoung() const {
    return mix_ && !mix_->isAlive() && ticks_ < ticksOfYouth && platform_.devices.isAvailable();
}

/// Makes the difference between what is wanted and what is there smaller, as far as can be now.
void MixKeeper::step() {
    const bool isAway = !platform_.devices.isAvailable();
    const bool isBack = std::exchange(wasAway_, isAway) && !isAway;
    if (!isOn_) {
        return;
    }
    retry_.reset();
    if (diedYoung()) {
        drop();
        followLevels();
        retryLater();
        return;
    }
    if (mix_ && !mix_->isAlive()) {
        drop();
    }
    if (isAway) {
        // What still plays goes on; what the rest lacks cannot be known.
        problems_.clear();
        settling_.reset();
        followLevels();
        return;
    }
    if (isBack) {
        settle();
    }
    if (mix_ && restart_) {
        // All of it is built anew in a moment. Who begins to play meanwhile is not left out that
        // long: one that is to be silenced would be loud.
        if (mix_->isUpToDate()) {
            problems_ = mix_->takeSources(sources_);
            followLevels();
        }
        return;
    }
    if (mix_ && !mix_->isUpToDate()) {
        drop();
    }
    build();
    if (problems_.empty()) {
        settling_.reset();
    }
    followLevels();
    if (std::ranges::any_of(problems_, [&](const auto& one) { return mayHealUnseen(one); }) ||
        (monitorProblem_ && mayHealUnseen(*monitorProblem_))) {
        retryLater();
    }
}

void MixKeeper::build() {
    try {
        if (!mix_) {
            restart_.reset();
            mix_ = std::make_unique<RunningMix>(platform_, settings_);
            ticks_ = 0;
            meterTimer_ = platform_.mainQueue.every(meterPeriod, [this] { tick(); });
            blocks_.begin();
        }
        mix_->takeDefaultOutput();
        followMonitor();
        problems_ = mix_->takeSources(sources_);
        blocks_.setHeard(isHeard());
    } catch (const std::exception& error) {
        drop();
        problems_ = {problemOf(error)};
    }
}

void MixKeeper::tick() {
    const BlockStatus blocks = blocks_.status();
    ++ticks_;
    if (ticks_ % ticksPerLook == 0) {
        blocks_.setHeard(isHeard());
        blocks_.look(ticksPerLook * std::chrono::floor<std::chrono::milliseconds>(meterPeriod));
    }
    const bool haveLevelsChanged = meters_.tick(mix_->captures());
    const bool hasStreamLampChanged = streamLamp_.tick(mix_->streamLimiterGain());
    const bool hasMonitorLampChanged = monitorLamp_.tick(mix_->monitorLimiterGain());
    ticked_.emit();
    if (hasStreamLampChanged || hasMonitorLampChanged || blocks_.status() != blocks) {
        changed_.emit();
    } else if (haveLevelsChanged) {
        levelsMoved_.emit();
    }
}

bool MixKeeper::isHeard() const {
    return audience_.hasListeners() ||
           (mix_->monitorTarget() && settings_.kept.headphoneVolume() > 0.0F);
}

void MixKeeper::followMonitor() {
    const auto wanted = wantedMonitor();
    if (wanted != mix_->monitorTarget()) {
        // Deliberate: without a monitoring output the stream still runs, and nothing is told.
        monitorProblem_ = mix_->moveMonitor(wanted);
    } else {
        monitorProblem_.reset();
    }
}

void MixKeeper::followLevels() {
    if (mix_) {
        meters_.keepOnly(mix_->captures());
    } else {
        meters_.clear();
    }
}

void MixKeeper::drop() {
    meterTimer_.reset();
    blocks_.end();
    mix_.reset();
    streamLamp_ = {};
    monitorLamp_ = {};
    monitorProblem_.reset();
}

void MixKeeper::settle() {
    settling_ =
        platform_.mainQueue.after(settlingTime, [this] { react([this] { settling_.reset(); }); });
}

void MixKeeper::retryLater() {
    retry_ = platform_.mainQueue.after(pause_.next(), [this] { react([this] { step(); }); });
}

bool MixKeeper::hasWorkingSource() const {
    return mix_ && !mix_->captures().empty();
}

/// The user's own doing: where the chosen device is not there, the default output serves.
void MixKeeper::allowFallback() {
    const auto& selection = settings_.kept.monitoringSelection();
    fallback_ = chosenMonitor(platform_.devices, selection)
                    ? std::nullopt
                    : resolveMonitoringDevice(platform_.devices, selection);
}

std::optional<OutputTarget> MixKeeper::wantedMonitor() {
    const auto& selection = settings_.kept.monitoringSelection();
    if (!namesMonitor(selection)) {
        return resolveMonitoringDevice(platform_.devices, std::nullopt);
    }
    if (const auto chosen = chosenMonitor(platform_.devices, selection)) {
        fallback_.reset(); // from here on it plays there or nowhere
        return monitorable(platform_.devices, *chosen);
    }
    return fallback_ ? monitorable(platform_.devices, *fallback_) : std::nullopt;
}

/// False when nothing but a change that is told can mend it.
bool MixKeeper::mayHealUnseen(const Problem& problem) const {
    switch (problem.kind) {
    case Problem::Kind::noVirtualMic:
    case Problem::Kind::pairMissing:
    case Problem::Kind::channelMissing:
    case Problem::Kind::noSoundYet:
        return false;
    case Problem::Kind::inputNotAssigned:
        return std::ranges::any_of(sources_, [&](const AudioSource& source) {
            return source.name() == problem.subject && isDeviceThere(platform_.devices, source);
        });
    default:
        return true;
    }
}

} // namespace velmora
