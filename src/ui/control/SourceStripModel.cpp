#include "ui/control/SourceStripModel.h"

#include "capture/RangeName.h"
#include "engine/AudioEngine.h"
#include "operations/MuteToggle.h"
#include "ui/control/SourceIcons.h"
#include "ui/control/TakeOver.h"

namespace velmora {

namespace {

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
      connection_(engine.changed().connect([this] { follow(); })),
      soundConnection_(platform.devices.changed().connect([this] { followSound(); })) {
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
    if (sound_.isUndecoded) {
        return QStringLiteral("Le son de cette app part sans être décodé : il ne peut pas être "
                              "mixé.");
    }
    if (directMuted_ && sound_.isStillHeard) {
        return QStringLiteral("Cette app ne peut pas être coupée sur sa sortie directe.");
    }
    if (isHeadset_) {
        return QStringLiteral("Micro Bluetooth : la lecture passe en qualité d'appel.");
    }
    return {};
}

void SourceStripModel::setFxOpen(bool open) {
    if (takeOver(fxOpen_, open)) {
        Q_EMIT fxOpenChanged();
    }
}

void SourceStripModel::setFollowsLevel(bool follows) {
    followsLevel_ = follows;
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
    followLevel();
}

void SourceStripModel::followSound() {
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
