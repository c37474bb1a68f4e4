#include "ui/control/SourceStripModel.h"

#include "capture/RangeName.h"
#include "engine/AudioEngine.h"
#include "operations/MuteToggle.h"
#include "ui/control/SourceIcons.h"
#include "ui/control/TakeOver.h"

namespace velmora {

namespace {

using namespace std::chrono_literals;

constexpr auto firstLook = 500ms;
constexpr auto longestPause = 5000ms;

QString iconOf(const AudioSource& source, const Platform& platform) {
    const auto* const app = source.app();
    return app != nullptr ? applicationIcon(platform.applications, app->bundleID) : QString();
}

QString symbolOf(const AudioSource& source, const Platform& platform) {
    if (const auto* const device = source.device()) {
        return deviceSymbol(platform.devices, device->id);
    }
    if (const auto* const channels = source.deviceChannels()) {
        return deviceSymbol(platform.devices, channels->id);
    }
    return QStringLiteral("waveform");
}

/// As usual for what is no application, or has not played yet.
ApplicationSound soundOf(const AudioSource& source, const Platform& platform) {
    const auto* const app = source.app();
    const auto process = app == nullptr ? std::nullopt : platform.taps.processForPid(app->pid);
    return process ? platform.taps.sound(*process).value_or(ApplicationSound{})
                   : ApplicationSound{};
}

bool isHeadsetMicrophone(const AudioSource& source, const Platform& platform) {
    const auto* const device = source.device();
    const auto* const channels = source.deviceChannels();
    const AudioObjectID id = device != nullptr     ? device->id
                             : channels != nullptr ? channels->id
                                                   : 0;
    return id != 0 && platform.devices.isBluetooth(id);
}

} // namespace

SourceStripModel::SourceStripModel(const Platform& platform,
                                   AudioEngine& engine,
                                   const AudioSource& source,
                                   QObject* parent)
    : QObject(parent), platform_(platform), engine_(engine), source_(source),
      icon_(iconOf(source, platform)), symbol_(symbolOf(source, platform)),
      effects_(engine, source, this), gain_(engine.gain(source)),
      directMuted_(engine.isDirectMuted(source)), sound_(soundOf(source, platform)),
      isHeadset_(isHeadsetMicrophone(source, platform)),
      recordsMicrophone_(engine.audience().includes(source)), fxBypassed_(engine.fxBypassed()),
      stage_(stage()), pause_(firstLook, longestPause),
      connection_(engine.changed().connect([this] { follow(); })),
      soundConnection_(platform.devices.changed().connect([this] { followSound(); })) {
    followEcho();
    followCondition();
    connect(&effects_, &EffectsModel::neutralChanged, this, &SourceStripModel::fxActiveChanged);
}

QString SourceStripModel::nameIn(const QString& one, const QString& several) const {
    const std::string first = one.toStdString();
    const std::string second = several.toStdString();
    return QString::fromStdString(shownName(source_, {.one = first, .several = second}));
}

void SourceStripModel::setGain(double gain) {
    const auto linear = static_cast<float>(gain);
    if (isGain(linear) && linear != engine_.gain(source_)) {
        engine_.setGain(linear, source_);
    }
}

bool SourceStripModel::muted() const {
    return isMutedGain(gain_);
}

void SourceStripModel::toggleMute() {
    engine_.setGain(toggledGain(platform_.defaults, premuteKey(source_), engine_.gain(source_)),
                    source_);
}

void SourceStripModel::setDirectMuted(bool muted) {
    if (muted != engine_.isDirectMuted(source_)) {
        engine_.setDirectMuted(muted, source_);
    }
}

bool SourceStripModel::canMuteDirect() const {
    return isApplication() && (sound_.canBeMuted || directMuted_);
}

QString SourceStripModel::notice() const {
    if (opening_) {
        return QStringLiteral("Ouverture…");
    }
    switch (condition_) {
    case SourceCondition::gone:
        return isApplication() ? QStringLiteral("Cette app s'est fermée.")
                               : QStringLiteral("Débranché : reprend dès son retour.");
    case SourceCondition::failed:
        return QStringLiteral("N'a pas pu démarrer.");
    case SourceCondition::awaited:
        return QStringLiteral("Attend que cette app joue.");
    case SourceCondition::fine:
        break;
    }
    if (sound_.isUndecoded) {
        return QStringLiteral("Le son de cette app part sans être décodé : il ne peut pas être "
                              "mixé.");
    }
    if (directMuted_ && sound_.isStillHeard) {
        return QStringLiteral("Cette app ne peut pas être coupée sur sa sortie directe.");
    }
    if (hearsItself_) {
        return QStringLiteral("S'entend dans le micro");
    }
    if (isHeadset_) {
        return QStringLiteral("Micro Bluetooth : la lecture passe en qualité d'appel.");
    }
    return {};
}

QString SourceStripModel::remedy() const {
    if (opening_) {
        return {};
    }
    if (condition_ == SourceCondition::gone) {
        return remedyForTheGone_;
    }
    return hearsItself_ && !idle() ? QStringLiteral("Retirer du mix") : QString();
}

void SourceStripModel::applyRemedy() {
    if (condition_ == SourceCondition::gone) {
        Q_EMIT wantedBack(source_);
    } else if (hearsItself_) {
        remove();
    }
}

void SourceStripModel::setOpening(bool opening) {
    if (takeOver(opening_, opening)) {
        Q_EMIT soundChanged();
    }
}

void SourceStripModel::setFxOpen(bool open) {
    if (takeOver(fxOpen_, open)) {
        Q_EMIT fxOpenChanged();
    }
}

void SourceStripModel::setTwin(int twin) {
    if (takeOver(twin_, twin)) {
        Q_EMIT twinChanged();
    }
}

void SourceStripModel::setFollowsLevel(bool follows) {
    followsLevel_ = follows;
    followCondition();
    followLevel();
}

void SourceStripModel::remove() {
    Q_EMIT removed(removeSource(engine_, source_));
}

void SourceStripModel::follow() {
    if (takeOver(gain_, engine_.gain(source_))) {
        Q_EMIT gainChanged();
    }
    if (takeOver(directMuted_, engine_.isDirectMuted(source_))) {
        Q_EMIT directMutedChanged();
        Q_EMIT soundChanged();
    }
    if (takeOver(fxBypassed_, engine_.fxBypassed())) {
        Q_EMIT fxBypassedChanged();
    }
    followEcho();
    if (takeOver(stage_, stage())) {
        followCondition();
    }
    followLevel();
}

SourceStripModel::Stage SourceStripModel::stage() const {
    return {.isOn = engine_.isRunning(),
            .isCaptured = engine_.isCaptured(source_),
            .isServiceAway = engine_.isServiceAway()};
}

void SourceStripModel::followCondition() {
    const bool isOther = takeOver(condition_, conditionNow());
    if (takeOver(remedyForTheGone_, remedyForTheGone()) || isOther) {
        Q_EMIT soundChanged();
    }
}

SourceCondition SourceStripModel::conditionNow() {
    const SourceCondition now = conditionOf(platform_, engine_, source_);
    const auto* const app = source_.app();
    const bool isToBeWatched = app != nullptr && followsLevel_ && !stage_.isServiceAway &&
                               now != SourceCondition::gone &&
                               platform_.taps.processForPid(app->pid).value_or(0) == 0;
    if (isToBeWatched) {
        look_ = platform_.mainQueue.after(pause_.next(), [this] { followCondition(); });
    } else {
        look_.reset();
    }
    return now;
}

QString SourceStripModel::remedyForTheGone() const {
    if (condition_ != SourceCondition::gone) {
        return {};
    }
    if (successorOf(platform_, engine_, source_)) {
        return QStringLiteral("Reprendre");
    }
    return closedApplication(platform_, source_) ? QStringLiteral("Relancer") : QString();
}

/// What is silent in the mix is not in the microphone either.
void SourceStripModel::followEcho() {
    if (takeOver(hearsItself_, recordsMicrophone_ && engine_.isRunning() && !muted())) {
        Q_EMIT soundChanged();
    }
}

void SourceStripModel::followSound() {
    recordsMicrophone_ = engine_.audience().includes(source_);
    followEcho();
    pause_.restart(); // something new was seen
    followCondition();
    const bool isOther = takeOver(sound_, soundOf(source_, platform_));
    if (takeOver(isHeadset_, isHeadsetMicrophone(source_, platform_)) || isOther) {
        Q_EMIT soundChanged();
    }
}

void SourceStripModel::followLevel() {
    if (!followsLevel_) {
        return;
    }
    const auto& levels = engine_.sourceLevels();
    const auto found = levels.find(source_.id());
    if (takeOver(level_, found == levels.end() ? 0.0F : found->second)) {
        Q_EMIT levelChanged();
    }
}

} // namespace velmora
