#include "ui/control/VolumeModel.h"

#include "engine/AudioEngine.h"
#include "engine/Sentence.h"
#include "operations/MuteToggle.h"
#include "operations/PushToTalk.h"
#include "platform/DefaultsStore.h"
#include "settings/AppSettings.h"
#include "ui/control/TakeOver.h"

#include <cmath>
#include <utility>

namespace velmora {

VolumeModel::Output VolumeModel::headphones(AudioEngine& engine) {
    return {.symbol = "headphones",
            .frenchName = "Casque",
            .premuteKey = headphonePremuteKey,
            .volume = {.get = [&engine] { return engine.headphoneVolume(); },
                       .set = [&engine](float volume) { engine.setHeadphoneVolume(volume); }},
            .isLimited = [&engine] { return engine.isHeadphonesLimited(); }};
}

VolumeModel::Output VolumeModel::stream(AudioEngine& engine, PushToTalk& talk) {
    return {.symbol = "dot.radiowaves.left.and.right",
            .frenchName = "Micro virtuel",
            .premuteKey = streamPremuteKey,
            .volume = {.get = [&engine] { return engine.streamVolume(); },
                       .set = [&engine](float volume) { engine.setStreamVolume(volume); }},
            .isLimited = [&engine] { return engine.isStreamLimited(); },
            .talk = &talk};
}

VolumeModel::VolumeModel(Output output,
                         AudioEngine& engine,
                         AppSettings& settings,
                         DefaultsStore& defaults,
                         QObject* parent)
    : QObject(parent), output_(std::move(output)), engine_(engine), settings_(settings),
      defaults_(defaults), name_(text(output_.frenchName)), value_(output_.volume.get()),
      engineConnection_(engine.changedBesidesLevels().connect([this] { followEngine(); })),
      settingsConnection_(settings.changed().connect([this] { followLanguage(); })) {
    if (output_.talk != nullptr) {
        talkConnection_ = output_.talk->changed().connect([this] { followNotice(); });
    }
    followNotice();
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
    if (takeOver(limited_, output_.isLimited())) {
        Q_EMIT limitedChanged();
    }
    followNotice();
}

void VolumeModel::followNotice() {
    const bool isReduced = output_.talk != nullptr && engine_.audience().reduction().has_value();
    const bool isOther = takeOver(notice_, noticeNow());
    const bool isTurned =
        takeOver(closed_, output_.talk != nullptr && engine_.isMicrophoneClosed());
    if (takeOver(remedy_, isReduced ? text("Remettre à 100 %") : QString()) || isOther ||
        isTurned) {
        Q_EMIT noticeChanged();
    }
}

QString VolumeModel::noticeNow() const {
    if (output_.talk == nullptr) {
        return {};
    }
    const Audience& audience = engine_.audience();
    if (const auto reduction = audience.reduction()) {
        // Mixers show the cube root.
        const auto percent = std::to_string(std::lround(100 * std::cbrt(reduction->linear)));
        return reduction->isMuted ? text("Coupé dans un autre mélangeur")
                                  : QString::fromStdString(filled(
                                        settings_.t("Baissé à {percent} % dans un autre mélangeur"),
                                        {{"{percent}", percent}}));
    }
    if (output_.talk->isOn()) {
        // One or the other, so that the row keeps its height from press to press.
        return text(engine_.isMicrophoneClosed() ? "Fermé : tiens la touche pour parler"
                                                 : "Ouvert tant que la touche est tenue");
    }
    return audience.isMissing() ? text("Aucun programme n'écoute le micro") : QString();
}

void VolumeModel::applyRemedy() {
    engine_.restoreMicrophoneVolume();
}

QString VolumeModel::text(std::string_view french) const {
    return QString::fromStdString(settings_.t(french));
}

void VolumeModel::followLanguage() {
    if (takeOver(name_, text(output_.frenchName))) {
        Q_EMIT nameChanged();
    }
    followNotice();
}

} // namespace velmora
