#include "ui/control/VolumeModel.h"

#include "engine/AudioEngine.h"
#include "operations/MuteToggle.h"
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

VolumeModel::Output VolumeModel::stream(AudioEngine& engine) {
    return {.symbol = "dot.radiowaves.left.and.right",
            .frenchName = "Micro virtuel",
            .premuteKey = streamPremuteKey,
            .volume = {.get = [&engine] { return engine.streamVolume(); },
                       .set = [&engine](float volume) { engine.setStreamVolume(volume); }}};
}

VolumeModel::VolumeModel(Output output,
                         AudioEngine& engine,
                         AppSettings& settings,
                         DefaultsStore& defaults,
                         QObject* parent)
    : QObject(parent), output_(std::move(output)), settings_(settings), defaults_(defaults),
      name_(QString::fromStdString(settings.t(output_.frenchName))), value_(output_.volume.get()),
      engineConnection_(engine.changed().connect([this] { followEngine(); })),
      settingsConnection_(settings.changed().connect([this] { followLanguage(); })) {
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
}

void VolumeModel::followLanguage() {
    if (takeOver(name_, QString::fromStdString(settings_.t(output_.frenchName)))) {
        Q_EMIT nameChanged();
    }
}

} // namespace velmora
