#include "ui/control/VolumeModel.h"

#include "engine/AudioEngine.h"
#include "operations/MuteToggle.h"
#include "operations/PushToTalk.h"
#include "platform/DefaultsStore.h"
#include "settings/AppSettings.h"
#include "ui/control/TakeOver.h"

#include <utility>

namespace velmora {

VolumeModel::Output VolumeModel::headphones(AudioEngine& engine) {
    return {.symbol = "headphones",
            .frenchName = "Casque",
            .premuteKey = headphonePremuteKey,
            .volume = {.get = [&engine] { return engine.headphoneVolume(); },
                       .set = [&engine](float volume) { engine.setHeadphoneVolume(volume); }}};
}

VolumeModel::Output VolumeModel::stream(AudioEngine& engine, PushToTalk& talk) {
    return {.symbol = "dot.radiowaves.left.and.right",
            .frenchName = "Micro virtuel",
            .premuteKey = streamPremuteKey,
            .volume = {.get = [&engine] { return engine.streamVolume(); },
                       .set = [&engine](float volume) { engine.setStreamVolume(volume); }},
            .talk = &talk};
}

VolumeModel::VolumeModel(Output output,
                         AudioEngine& engine,
                         AppSettings& settings,
                         DefaultsStore& defaults,
                         QObject* parent)
    : QObject(parent), output_(std::move(output)), engine_(engine), settings_(settings),
      defaults_(defaults), name_(QString::fromStdString(settings.t(output_.frenchName))),
      value_(output_.volume.get()),
      engineConnection_(engine.changed().connect([this] { followEngine(); })),
      settingsConnection_(settings.changed().connect([this] { followLanguage(); })) {
    if (output_.talk != nullptr) {
        talkConnection_ = output_.talk->changed().connect([this] { followTalk(); });
        followTalk();
    }
}

void VolumeModel::setValue(double value) {
    const auto volume = static_cast<float>(value);
    if (isGain(volume) && volume != output_.volume.get()) {
        output_.volume.set(volume);
    }
}

bool VolumeModel::muted() const {
    return isMutedGain(value_);
}

void VolumeModel::toggleMute() {
    output_.volume.set(toggledGain(defaults_, output_.premuteKey, output_.volume.get()));
}

void VolumeModel::followEngine() {
    if (takeOver(value_, output_.volume.get())) {
        Q_EMIT valueChanged();
    }
    followTalk();
}

void VolumeModel::followTalk() {
    if (output_.talk == nullptr) {
        return;
    }
    const bool isClosed = engine_.isMicrophoneClosed();
    // The row keeps its height from press to press.
    const char* const french =
        isClosed ? "Fermé : tiens la touche pour parler" : "Ouvert tant que la touche est tenue";
    const QString note =
        output_.talk->isOn() ? QString::fromStdString(settings_.t(french)) : QString();
    const bool differs = takeOver(closed_, isClosed);
    if (takeOver(talkNote_, note) || differs) {
        Q_EMIT talkChanged();
    }
}

void VolumeModel::followLanguage() {
    if (takeOver(name_, QString::fromStdString(settings_.t(output_.frenchName)))) {
        Q_EMIT nameChanged();
    }
    followTalk();
}

} // namespace velmora
